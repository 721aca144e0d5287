#pragma once

#include <string>
#include <string_view>

namespace skyhaul {

// Takes what stands before the separator off the rest; the separator goes too. Without one the
// whole rest is taken. A rest that is empty gives empty fields for ever.
std::string_view TakeField(std::string_view& rest, char separator);

// Whether a map datum's name is one of the spellings of WGS 84: "WGS 84", "WGS84", "wgs-84" ...
bool IsWgs84(std::string_view datum);

// "Format error on line 12: what".
std::string LineError(int line, std::string_view what);

// "Line 12: what", for a line that is skipped or used in part.
std::string LineNote(int line, std::string_view what);

}  // namespace skyhaul
