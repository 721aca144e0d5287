#pragma once

#include <string>
#include <string_view>

namespace skyhaul {

// UTF-8 as Windows-1252, for the programs that know nothing else. Characters that it lacks become
// their plain ASCII letters, or '?'. Bytes that are not UTF-8 give something, never a fault.
std::string ToWindows1252(std::string_view utf8);

}  // namespace skyhaul
