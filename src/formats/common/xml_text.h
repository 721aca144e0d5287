#pragma once

#include <string>
#include <string_view>

namespace skyhaul {

// Appends text as the content of an XML 1.0 element or of an attribute in double quotes. Text that
// is not UTF-8 is taken for Windows-1252; the characters that XML forbids, most control characters
// among them, become blanks, and U+FFFE and U+FFFF question marks.
void AppendXmlText(std::string& xml, std::string_view text);

// Appends "<name>text</name>" and a line end.
void AppendXmlElement(std::string& xml, std::string_view name, std::string_view text);

}  // namespace skyhaul
