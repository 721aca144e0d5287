#pragma once

#include <string>
#include <string_view>

namespace skyhaul {

// A header text as UTF-8 that can be shown: bytes that are not UTF-8 throughout are taken for
// ISO 8859-1, and characters that do not print (controls, deletion) become '?'.
std::string PrintableText(std::string_view bytes);

}  // namespace skyhaul
