#pragma once

#include <string>
#include <string_view>

namespace skyhaul {

// A text from a file or an instrument as UTF-8 that is safe to show on a terminal: bytes that are
// not UTF-8 throughout are taken for ISO 8859-1, and control characters (C0, DEL and C1, line ends
// among them) become '?'.
std::string PrintableText(std::string_view bytes);

// The same line by line: our own texts have line ends, which stay.
std::string PrintableLines(std::string_view text);

// A text for one field of a line: control characters (C0 and DEL), line ends among them, become
// blanks, and the blanks around it go.
std::string OneLine(std::string_view text);

}  // namespace skyhaul
