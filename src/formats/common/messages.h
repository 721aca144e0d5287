#pragma once

#include <string>
#include <string_view>

namespace skyhaul {

// "Format error on line 12: what", for a file that is refused.
std::string LineError(int line, std::string_view what);

// "Line 12: what", for a line that is skipped or used in part.
std::string LineNote(int line, std::string_view what);

// What is wrong with a file on another map datum than WGS 84, or an empty text. "WGS 84", "WGS84",
// "wgs-84" and "WGS 1984" are the same.
std::string DatumError(int line, std::string_view datum);

}  // namespace skyhaul
