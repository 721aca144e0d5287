#include "protocols/flytec/field_text.h"

#include <set>

#include "core/text/charset.h"

namespace skyhaul::flytec {

std::string FieldText(std::string_view utf8, size_t width) {
  std::string text = ToAscii(utf8);
  text.resize(width, ' ');
  for (char& c : text) {
    // A comma would end the field, an asterisk the sentence, a dollar would begin another.
    if (c == ',' || c == '*' || c == '$') c = '-';
    if (c < ' ' || c == '\x7f') c = ' ';
  }
  return text;
}

std::vector<std::string> NameFields(std::span<const std::string> utf8, uint32_t& changed) {
  std::vector<std::string> fields;
  // In the order of the list: the first of several names that become alike stays as it is.
  std::set<std::string> taken;
  changed = 0;
  for (const std::string& text : utf8) {
    std::string field = FieldText(text);
    if (TextOfField(field, kNameWidth).empty()) field = FieldText("Unnamed");
    bool is_changed = ToAscii(text).size() > kNameWidth;
    const std::string base = TextOfField(field, kNameWidth);
    for (uint32_t n = 2; !taken.insert(field).second; ++n) {
      const std::string number = std::to_string(n);
      // The number replaces the last characters of a name that fills its width, and follows a
      // shorter one.
      field = FieldText(base.substr(0, kNameWidth - number.size()) + number);
      is_changed = true;
    }
    changed += is_changed ? 1 : 0;
    fields.push_back(field);
  }
  return fields;
}

std::string TextOfField(std::string_view field, size_t longest) {
  field = field.substr(0, longest);
  const size_t last = field.find_last_not_of(' ');
  return std::string(field.substr(0, last == std::string_view::npos ? 0 : last + 1));
}

}  // namespace skyhaul::flytec
