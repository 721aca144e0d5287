#pragma once

#include <string>
#include <string_view>

#include "core/airspace.h"

namespace skyhaul::openair {

// Reads an altitude limit: "GND", "SFC", "UNLIM", "FL65", "FL 65", "2500ft AGL", "1000 M MSL",
// "4500" and what else real files write, in capitals or not. A number without a unit is in feet,
// one without a reference above the sea; "GND" or "SFC" after a number says what it is counted
// from. What stands in brackets behind the limit is left aside. The text is kept in any case.
// Returns 0, or -1 when it is not understood ("Ask on 122.8"); then the reference is kNotGiven.
int ParseLimit(std::string_view text, AirspaceLimit& limit);

// The limit as a file holds it: its text if it has one, else composed from the values. Whoever
// changes a value must clear the text. Empty when nothing is given.
std::string LimitText(const AirspaceLimit& limit);

}  // namespace skyhaul::openair
