#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace skyhaul::ozi {

inline constexpr double kUnknownAltitude_ft = -777;

// OziExplorer's fields are separated by commas and cannot hold any. A comma inside a text is
// written as the character 209, "Ñ" in Windows-1252, which OziExplorer shows as a comma. Spanish
// names do hold the letter: before another letter it is one, elsewhere it is a comma.

// A field's text, UTF-8, as the text that was meant.
std::string TextFromField(std::string_view field);

// UTF-8 as a field's bytes, Windows-1252: on one line, at most so many characters, a comma before a
// letter followed by a blank, a last "Ñ" of a word as "N".
std::string TextToField(std::string_view text, size_t count);

// OziExplorer dates are spreadsheet days. Returns 0, time unknown, for days outside the time scale.
uint32_t TimeFromSpreadsheetDay(double day);

// Appends the day with 7 decimals, up to 9 ms after the moment and never at or before it: a
// program that cuts off what its arithmetic leaves of a second stays in the right one.
void AppendSpreadsheetDay(std::string& text, uint32_t time, uint32_t milliseconds);

}  // namespace skyhaul::ozi
