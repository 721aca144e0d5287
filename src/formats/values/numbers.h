#pragma once

#include <string>
#include <string_view>

namespace skyhaul {

// Numbers with a decimal point whatever the user's locale says.

// Reads a text that is one number as ParseDecimal of formats/text/scan.h takes it, with blanks
// around it allowed. Returns false, with the value unchanged, for anything else.
bool ReadNumber(std::string_view text, double& value);

// Reads a text that consists of decimal digits only. Returns -1 for anything else, also for numbers
// above 999,999,999.
int ReadWholeNumber(std::string_view text);

// Appends a number with exactly so many decimals, correctly rounded.
void AppendFixed(std::string& text, double value, int decimals);

// Appends a number with leading zeros up to a width; a longer number is written in full.
void AppendWhole(std::string& text, unsigned number, size_t width);

}  // namespace skyhaul
