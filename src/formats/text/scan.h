#pragma once

#include <string>
#include <string_view>

namespace skyhaul {

// Small steps of reading text files, all of them independent of the locale. Blanks are spaces and
// tabs.

// Takes the next line off the front, without its line end: LF, CR LF or a CR alone.
std::string_view TakeLine(std::string_view& rest);

// Takes the next word off the front, skipping blanks before it. Empty when there is none.
std::string_view TakeWord(std::string_view& rest);

std::string_view TrimBlanks(std::string_view text);

// The whole of a text as a decimal number, "12", "-3.5" or "+.25" with no blank around. Returns 0,
// or -1 when it is none (infinities and exponents are none) and leaves the number.
int ParseDecimal(std::string_view text, double& number);

// Whether two ASCII texts differ at most in capitals.
bool EqualIgnoringCase(std::string_view a, std::string_view b);

// A text for one field of a line: control characters, line ends among them, become blanks, and the
// blanks around it go.
std::string OneLine(std::string_view text);

}  // namespace skyhaul
