#pragma once

#include <string>
#include <string_view>

namespace skyhaul {

// The system's 16-bit text for one of ours, which is UTF-8; empty when it is not UTF-8.
std::wstring WideText(std::string_view utf8);

// UTF-8 for a text of the system. Halves of characters, which file names can hold, become U+FFFD.
std::string Utf8Text(std::wstring_view wide);

// A path as the system's file functions take it. One that is too long for the usual form gets the
// form without that limit. Empty when it is not UTF-8, which no file answers to.
std::wstring WidePath(const std::string& utf8);

}  // namespace skyhaul
