#include "protocols/sentence/fields.h"

#include "core/text/digits.h"

namespace skyhaul {

bool SplitField(std::string_view& rest, std::string_view& field) {
  const size_t comma = rest.find(',');
  if (comma == std::string_view::npos) return false;
  field = rest.substr(0, comma);
  rest.remove_prefix(comma + 1);
  return true;
}

std::vector<std::string_view> SplitFields(std::string_view line, size_t max_fields) {
  std::vector<std::string_view> fields;
  std::string_view field;
  // The last field that is allowed takes the rest of the line.
  while (fields.size() + 1 < max_fields && SplitField(line, field)) fields.push_back(field);
  fields.push_back(line);
  return fields;
}

int ParseUintField(std::string_view text, uint32_t& value) {
  constexpr uint32_t kLargestToExtend = 214748364;  // one more digit still fits 32 bits
  size_t i = 0;
  while (i < text.size() && text[i] == ' ') ++i;
  uint32_t number = 0;
  for (; i < text.size() && IsDigit(text[i]); ++i) {
    if (number > kLargestToExtend) return -1;
    number = number * 10 + static_cast<uint32_t>(text[i] - '0');
  }
  while (i < text.size() && text[i] == ' ') ++i;
  // A blank between two digits, a sign or a letter.
  if (i != text.size()) return -1;
  value = number;
  return 0;
}

}  // namespace skyhaul
