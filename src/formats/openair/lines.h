#pragma once

#include <string>
#include <string_view>

#include "core/airspace.h"

namespace skyhaul::openair {

// A line as the reader looks at it.
struct Line {
  std::string_view code;      // "AC", "DP", "V", ...; empty on a line without content
  std::string_view argument;  // what follows the code, without a comment and blanks around it
  std::string_view content;   // both
  bool swallowed = false;     // whether its comment holds a record of an outline
};

// The records that are kept as they are.
struct DetailCode {
  std::string_view code;
  std::string CtrRecord::*field;
};
inline constexpr DetailCode kDetailCodes[] = {
    {.code = "AY", .field = &CtrRecord::type},
    {.code = "AF", .field = &CtrRecord::frequency},
    {.code = "AG", .field = &CtrRecord::station},
    {.code = "AX", .field = &CtrRecord::transponder},
    {.code = "AA", .field = &CtrRecord::activation},
    {.code = "AI", .field = &CtrRecord::id},
};

// Takes the next line. False when none is left. A known code in small letters is given in capitals;
// "DP47:30 N", without a blank, is taken as well.
bool TakeLine(std::string_view& rest, Line& line);

// V and the codes of segments.
bool IsOutlineCode(std::string_view code);

// Whether a line that is not understood may have been a piece of an outline: it begins as those do,
// or holds a piece of one. The place of a label (AT) and what looks like a comment are none.
bool MayBeOutline(const Line& line);

}  // namespace skyhaul::openair
