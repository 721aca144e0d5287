#include "formats/values/windows_1252.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "formats/text/charset.h"

namespace skyhaul {

namespace {

// The code points of the bytes 0x80 to 0x9F; 0: unused.
constexpr std::array<uint32_t, 32> kCodePoints80To9F = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,  //
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0,      0x017D, 0,       //
    0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,  //
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

// The length that a character's first byte announces; 1 for ASCII and for stray bytes.
size_t CharacterLength(unsigned char first) {
  if (first >= 0xF0) return 4;
  if (first >= 0xE0) return 3;
  return first >= 0xC0 ? 2 : 1;
}

uint32_t CodePoint(std::string_view character) {
  constexpr uint32_t kFirstByteMask[] = {0, 0xFF, 0x1F, 0x0F, 0x07};
  uint32_t code_point = static_cast<unsigned char>(character[0]) & kFirstByteMask[character.size()];
  for (const char c : character.substr(1)) {
    code_point = code_point << 6 | (static_cast<unsigned char>(c) & 0x3FU);
  }
  return code_point;
}

void AppendCharacter(std::string& bytes, std::string_view character) {
  const uint32_t code_point = CodePoint(character);
  const auto* const place =
      std::find(kCodePoints80To9F.begin(), kCodePoints80To9F.end(), code_point);
  if (character.size() == 1 || (code_point >= 0xA0 && code_point <= 0xFF)) {
    bytes += static_cast<char>(static_cast<unsigned char>(code_point));
  } else if (place != kCodePoints80To9F.end()) {
    bytes += static_cast<char>(0x80 + (place - kCodePoints80To9F.begin()));
  } else {
    bytes += ToAscii(character);
  }
}

}  // namespace

std::string ToWindows1252(std::string_view utf8) {
  std::string bytes;
  bytes.reserve(utf8.size());
  while (!utf8.empty()) {
    const size_t length =
        std::min(CharacterLength(static_cast<unsigned char>(utf8[0])), utf8.size());
    AppendCharacter(bytes, utf8.substr(0, length));
    utf8.remove_prefix(length);
  }
  return bytes;
}

}  // namespace skyhaul
