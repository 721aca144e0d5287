#include "core/text/utf8.h"

#include <cstddef>

namespace skyhaul {

namespace {

unsigned ByteAt(std::string_view text, size_t at) {
  return static_cast<unsigned char>(text[at]);
}

// The length in bytes that a character's first byte announces; 0 when none can start so. C0, C1 and
// F5 to FF begin overlong forms or codes above 10FFFF only.
size_t LengthOf(unsigned first) {
  if (first < 0x80) return 1;
  if (first >= 0xC2 && first <= 0xDF) return 2;
  if (first >= 0xE0 && first <= 0xEF) return 3;
  return first >= 0xF0 && first <= 0xF4 ? 4 : 0;
}

}  // namespace

uint32_t TakeCharacter(std::string_view& text) {
  // The smallest code that needs so many bytes: one below it is an overlong form.
  constexpr uint32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
  const unsigned first = ByteAt(text, 0);
  const size_t length = LengthOf(first);
  // The first byte of n keeps its last 7 - n bits.
  uint32_t code = length < 2 ? first : first & (0x7FU >> length);
  bool good = length != 0 && length <= text.size();
  for (size_t i = 1; good && i < length; ++i) {
    // 10xxxxxx
    good = (ByteAt(text, i) & 0xC0U) == 0x80;
    code = code << 6 | (ByteAt(text, i) & 0x3FU);
  }
  // Halves of surrogate pairs are codes of UTF-16 only.
  good = good && code >= kSmallest[length] && code <= 0x10FFFF && (code < 0xD800 || code > 0xDFFF);
  // One byte after an error, so that the next good character is found wherever it begins.
  text.remove_prefix(good ? length : 1);
  return good ? code : kNoCharacter;
}

bool IsUtf8(std::string_view text) {
  while (!text.empty()) {
    if (TakeCharacter(text) == kNoCharacter) return false;
  }
  return true;
}

size_t CountCharacters(std::string_view utf8) {
  size_t count = 0;
  for (; !utf8.empty(); ++count) TakeCharacter(utf8);
  return count;
}

std::string FirstCharacters(std::string_view utf8, size_t count) {
  std::string_view rest = utf8;
  for (size_t i = 0; i < count && !rest.empty(); ++i) TakeCharacter(rest);
  return std::string(utf8.substr(0, utf8.size() - rest.size()));
}

void AppendUtf8(std::string& text, uint32_t code) {
  if (code < 0x80) {
    text += static_cast<char>(code);
  } else if (code < 0x800) {
    // 110xxxxx 10xxxxxx
    text += static_cast<char>(0xC0 | code >> 6);
    text += static_cast<char>(0x80 | (code & 0x3F));
  } else {
    // 1110xxxx 10xxxxxx 10xxxxxx
    text += static_cast<char>(0xE0 | code >> 12);
    text += static_cast<char>(0x80 | (code >> 6 & 0x3F));
    text += static_cast<char>(0x80 | (code & 0x3F));
  }
}

}  // namespace skyhaul
