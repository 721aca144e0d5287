#include "platform/posix/settings_text.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <optional>
#include <utility>

#include "core/text/letter_case.h"
#include "core/text/numbers.h"
#include "core/text/scan.h"

namespace skyhaul {

namespace {

constexpr std::string_view kHexDigits = "0123456789abcdef";
constexpr unsigned char kFirstPrintable = 0x20;
constexpr unsigned char kDelete = 0x7f;

struct Escape {
  char letter;
  char meaning;
};
constexpr Escape kEscapes[] = {{'\\', '\\'}, {'"', '"'}, {'n', '\n'}, {'r', '\r'}, {'t', '\t'}};

bool IsControl(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte < kFirstPrintable || byte == kDelete;
}

bool NeedsQuotes(std::string_view value) {
  if (value.starts_with('"') || TrimBlanks(value) != value) return true;
  for (const char c : value) {
    if (IsControl(c)) return true;
  }
  return false;
}

// Two hexadecimal digits as a byte, or -1.
int ByteFromHex(std::string_view digits) {
  unsigned byte = 0;
  if (digits.size() != 2) return -1;
  const auto end = std::from_chars(digits.data(), digits.data() + 2, byte, 16);
  return end.ptr == digits.data() + 2 ? static_cast<int>(byte) : -1;
}

std::string HexOfByte(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return {kHexDigits[byte >> 4], kHexDigits[byte & 15]};
}

void AppendEscaped(std::string& out, char c) {
  for (const Escape& escape : kEscapes) {
    if (escape.meaning != c) continue;
    out += '\\';
    out += escape.letter;
    return;
  }
  out += IsControl(c) ? "\\x" + HexOfByte(c) : std::string(1, c);
}

// Takes one escape, without its backslash, off the front of a text. False when it is none.
bool TakeEscape(std::string_view& text, std::string& value) {
  if (text.starts_with('x')) {
    const int byte = ByteFromHex(text.substr(1, 2));
    if (byte < 0) return false;
    value += static_cast<char>(byte);
    text.remove_prefix(3);
    return true;
  }
  for (const Escape& escape : kEscapes) {
    if (!text.starts_with(escape.letter)) continue;
    value += escape.meaning;
    text.remove_prefix(1);
    return true;
  }
  return false;
}

// What is wrong with a value in quotes, or null. The text begins with the opening quote:
//   " with a blank\tand a tab"
const char* Unquote(std::string_view text, std::string& value) {
  text.remove_prefix(1);
  while (!text.empty()) {
    const char c = text.front();
    text.remove_prefix(1);
    if (c == '"') return text.empty() ? nullptr : "something follows the closing quote";
    if (c != '\\') {
      value += c;
    } else if (!TakeEscape(text, value)) {
      return "a backslash in quotes is followed by none of \\ \" n r t xHH";
    }
  }
  return "the closing quote is missing";
}

// What is wrong with a line, or null. Lines that are right:
//   IgcSite = Fiesch # 2          its value is "Fiesch # 2"
//   IgcPilot="Anna \"A.\" Muster "
//   # a comment
const char* ParseLine(SettingsLine& line) {
  const std::string_view text = TrimBlanks(line.text);
  if (text.empty() || text.starts_with('#')) return nullptr;
  const size_t equals = text.find('=');
  if (equals == std::string_view::npos) return "it is neither Name=value nor a comment";
  const std::string_view name = TrimBlanks(text.substr(0, equals));
  const std::string_view value = TrimBlanks(text.substr(equals + 1));
  if (name.empty()) return "there is no name before the =";
  // Values end up in C strings, which would end there.
  if (text.find('\0') != std::string_view::npos) return "it holds a zero byte";
  if (!value.starts_with('"')) {
    line.value = value;
  } else if (const char* wrong = Unquote(value, line.value)) {
    line.value.clear();
    return wrong;
  }
  line.name = name;
  return nullptr;
}

SettingsLine MakeLine(const std::string& name, const std::string& value) {
  std::string text = name + "=";
  if (NeedsQuotes(value)) {
    text += '"';
    for (const char c : value) AppendEscaped(text, c);
    text += '"';
  } else {
    text += value;
  }
  return {.text = std::move(text), .name = name, .value = value};
}

bool NumberFromValue(std::string_view value, std::string& bytes) {
  const std::optional<int32_t> number = ReadInteger<int32_t>(value);
  if (!number) return false;
  bytes.assign(reinterpret_cast<const char*>(&*number), sizeof *number);
  return true;
}

bool BinaryFromValue(std::string_view value, size_t capacity, std::string& bytes) {
  if (value.size() % 2 != 0 || value.size() / 2 > capacity) return false;
  std::string found;
  for (size_t i = 0; i < value.size(); i += 2) {
    const int byte = ByteFromHex(value.substr(i, 2));
    if (byte < 0) return false;
    found += static_cast<char>(byte);
  }
  bytes = std::move(found);
  return true;
}

}  // namespace

SettingsText ParseSettingsText(std::string_view text) {
  SettingsText settings;
  while (!text.empty()) {
    const size_t end = text.find('\n');
    SettingsLine line;
    line.text = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    // From an editor on Windows.
    while (line.text.ends_with('\r')) line.text.pop_back();
    if (const char* wrong = ParseLine(line)) {
      settings.notes.push_back("Line " + std::to_string(settings.lines.size() + 1) + ": " + wrong);
    }
    settings.lines.push_back(std::move(line));
  }
  return settings;
}

std::string FormatSettingsText(const SettingsText& settings) {
  std::string text;
  for (const SettingsLine& line : settings.lines) text += line.text + '\n';
  return text;
}

ptrdiff_t FindSetting(const SettingsText& settings, std::string_view name) {
  // From the end: of several lines with one name the last counts.
  for (size_t i = settings.lines.size(); i > 0; --i) {
    if (EqualIgnoringCase(settings.lines[i - 1].name, name)) return static_cast<ptrdiff_t>(i - 1);
  }
  return -1;
}

void PutSetting(SettingsText& settings, const std::string& name, const std::string& value,
                bool keep_old) {
  const ptrdiff_t place = FindSetting(settings, name);
  if (place < 0) {
    settings.lines.push_back(MakeLine(name, value));
    return;
  }
  const auto line = settings.lines.begin() + place;
  SettingsLine old = {.text = "# " + line->text, .name = {}, .value = {}};
  *line = MakeLine(name, value);
  if (keep_old) settings.lines.insert(line, std::move(old));
}

bool BytesFromValue(std::string_view value, ValueKind kind, size_t capacity, std::string& bytes) {
  switch (kind) {
    case ValueKind::kNumber:
      return capacity >= sizeof(int32_t) && NumberFromValue(value, bytes);
    case ValueKind::kBinary:
      return BinaryFromValue(value, capacity, bytes);
    case ValueKind::kText:
      if (value.size() > capacity || value.find('\0') != std::string_view::npos) return false;
      bytes = value;
      return true;
  }
  return false;
}

std::string ValueFromBytes(std::string_view bytes, ValueKind kind) {
  if (kind == ValueKind::kText) return std::string(bytes);
  std::string value;
  if (kind == ValueKind::kBinary) {
    for (const char byte : bytes) value += HexOfByte(byte);
    return value;
  }
  int32_t number = 0;
  std::memcpy(&number, bytes.data(), std::min(bytes.size(), sizeof number));
  return std::to_string(number);
}

}  // namespace skyhaul
