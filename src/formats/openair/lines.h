#pragma once

#include <string_view>

namespace skyhaul::openair {

// A line as the reader looks at it.
struct Line {
  std::string_view code;      // "AC", "DP", "V", ...; empty on a line without content
  std::string_view argument;  // what follows the code, without a comment and blanks around it
  std::string_view content;   // both
};

// Takes the next line. False when none is left. A
// known code in small letters is given in capitals; "DP47:30 N", without a blank, is taken as well.
bool TakeLine(std::string_view& rest, Line& line);

// V and the codes of segments.
bool IsOutlineCode(std::string_view code);

}  // namespace skyhaul::openair
