#include "formats/igc/printable.h"

#include <cstddef>
#include <cstdint>

namespace skyhaul {

namespace {

// How a UTF-8 sequence of one to four bytes begins, and the least character that needs that many: a
// longer form of a smaller character is not UTF-8.
struct SequenceForm {
  size_t length;
  uint32_t least;
  uint8_t lead_mask;
  uint8_t lead;
};
constexpr SequenceForm kSequenceForms[] = {
    {.length = 1, .least = 0, .lead_mask = 0x80, .lead = 0x00},
    {.length = 2, .least = 0x80, .lead_mask = 0xe0, .lead = 0xc0},
    {.length = 3, .least = 0x800, .lead_mask = 0xf0, .lead = 0xe0},
    {.length = 4, .least = 0x10000, .lead_mask = 0xf8, .lead = 0xf0},
};

bool IsCharacter(uint32_t character, uint32_t least) {
  const bool surrogate = character >= 0xd800 && character <= 0xdfff;
  return character >= least && character <= 0x10ffff && !surrogate;
}

// Decodes the sequence that the bytes begin with. Returns its length, or 0 when it is not UTF-8.
size_t DecodeUtf8(std::string_view bytes, uint32_t& character) {
  const auto lead = static_cast<uint8_t>(bytes.front());
  for (const SequenceForm& form : kSequenceForms) {
    if ((lead & form.lead_mask) != form.lead) continue;
    if (bytes.size() < form.length) return 0;
    character = lead & static_cast<uint8_t>(~form.lead_mask);
    for (size_t i = 1; i < form.length; ++i) {
      const auto byte = static_cast<uint8_t>(bytes[i]);
      if ((byte & 0xc0) != 0x80) return 0;
      character = (character << 6) | (byte & 0x3f);
    }
    return IsCharacter(character, form.least) ? form.length : 0;
  }
  return 0;
}

bool IsPrintable(uint32_t character) {
  return character >= 0x20 && (character < 0x7f || character > 0x9f);
}

std::string PrintableUtf8(std::string_view bytes) {
  std::string text;
  while (!bytes.empty()) {
    uint32_t character = 0;
    const size_t length = DecodeUtf8(bytes, character);
    if (IsPrintable(character)) {
      text += bytes.substr(0, length);
    } else {
      text += '?';
    }
    bytes.remove_prefix(length);
  }
  return text;
}

std::string PrintableLatin1(std::string_view bytes) {
  std::string text;
  for (const char byte : bytes) {
    const auto character = static_cast<uint8_t>(byte);
    if (!IsPrintable(character)) {
      text += '?';
    } else if (character < 0x80) {
      text += byte;
    } else {
      text += static_cast<char>(0xc0 | (character >> 6));
      text += static_cast<char>(0x80 | (character & 0x3f));
    }
  }
  return text;
}

bool IsUtf8(std::string_view bytes) {
  while (!bytes.empty()) {
    uint32_t character = 0;
    const size_t length = DecodeUtf8(bytes, character);
    if (length == 0) return false;
    bytes.remove_prefix(length);
  }
  return true;
}

}  // namespace

std::string PrintableText(std::string_view bytes) {
  return IsUtf8(bytes) ? PrintableUtf8(bytes) : PrintableLatin1(bytes);
}

}  // namespace skyhaul
