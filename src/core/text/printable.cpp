#include "core/text/printable.h"

#include <algorithm>
#include <cstdint>

#include "core/text/scan.h"
#include "core/text/utf8.h"

namespace skyhaul {

namespace {

// C1 controls count: 9B begins an escape sequence on many terminals.
bool IsPrintable(uint32_t character) {
  return character >= 0x20 && (character < 0x7f || character > 0x9f);
}

}  // namespace

std::string PrintableText(std::string_view bytes) {
  // The whole text decides. Files and instruments keep to one character set.
  const bool utf8 = IsUtf8(bytes);
  std::string text;
  text.reserve(bytes.size());
  while (!bytes.empty()) {
    const std::string_view before = bytes;
    uint32_t character = static_cast<unsigned char>(bytes.front());
    if (utf8) {
      character = TakeCharacter(bytes);
    } else {
      bytes.remove_prefix(1);
    }
    if (!IsPrintable(character)) {
      text += '?';
    } else if (utf8) {
      text += before.substr(0, before.size() - bytes.size());
    } else {
      AppendUtf8(text, character);  // ISO 8859-1 is the beginning of Unicode
    }
  }
  return text;
}

std::string PrintableLines(std::string_view text) {
  std::string shown;
  for (;;) {
    const size_t end = text.find('\n');
    shown += PrintableText(text.substr(0, end));
    if (end == std::string_view::npos) return shown;
    shown += '\n';
    text.remove_prefix(end + 1);
  }
}

std::string OneLine(std::string_view text) {
  std::string line(text);
  std::ranges::replace_if(
      // Unsigned, because the bytes of UTF-8 above 0x7F would be negative and count as controls.
      line, [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7F'; }, ' ');
  return std::string(TrimBlanks(line));
}

}  // namespace skyhaul
