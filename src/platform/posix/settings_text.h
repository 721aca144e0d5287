#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/platform.h"

namespace skyhaul {

// The text of a settings file. One Name=value a line, blanks around both do not count; of several
// lines with one name the last counts. Lines that begin with '#' and empty ones are a person's.
// A value that begins or ends with a blank, begins with a double quote or holds a control character
// is written in double quotes, with \\, \", \n, \r, \t and \xHH for what cannot stand there by
// itself. A '#' within a value belongs to it.
struct SettingsLine {
  std::string text;   // the line as it stands, without its end
  std::string name;   // empty: a comment, an empty line, or one that makes no sense
  std::string value;  // without quotes and escapes
};

struct SettingsText {
  std::vector<SettingsLine> lines;
  std::vector<std::string> notes;  // "Line 3: ..." for each line that makes no sense
};

// Takes a text apart. Nothing of it is lost: lines that make no sense are kept as they are.
SettingsText ParseSettingsText(std::string_view text);

// The text with every line ended by a line feed.
std::string FormatSettingsText(const SettingsText& settings);

// The place of the line that counts for a name that is not empty, counted from 0, or -1.
ptrdiff_t FindSetting(const SettingsText& settings, std::string_view name);

// Gives a name a value: on its line when it has one, else on a new one at the end. With keep_old
// the line that was there is kept above as a comment.
void PutSetting(SettingsText& settings, const std::string& name, const std::string& value,
                bool keep_old);

// A value as the file writes it, for each kind: texts as they are, numbers in decimal
// (-2147483648..2147483647), binary values in hexadecimal digits. Returns false when the text is
// nothing of that kind or more than capacity bytes; then bytes is untouched.
bool BytesFromValue(std::string_view value, ValueKind kind, size_t capacity, std::string& bytes);
std::string ValueFromBytes(std::string_view bytes, ValueKind kind);

}  // namespace skyhaul
