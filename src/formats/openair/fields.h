#pragma once

#include <string>
#include <string_view>

#include "core/airspace.h"

namespace skyhaul::openair {

// The numbers and positions of OpenAir lines. The Take functions read from the front of rest and
// leave what follows there; when they return false, rest may stand anywhere.

inline constexpr double kMetresPerNauticalMile = 1852;

// Blanks, and at most one comma among them.
void SkipSeparator(std::string_view& rest);

// A name or text as a line can hold it: control characters and '*', which begins a comment, become
// blanks; blanks around it are dropped.
std::string PlainText(std::string_view text);

// A decimal number without a sign or exponent, blanks before it allowed.
bool TakeNumber(std::string_view& rest, double& number);

// "47:30:15 N 008:15:30.5 E": degrees, minutes and seconds, or only the first one or two of them;
// the last may have a fraction. Sixty minutes or seconds, which rounding programs write, are the
// next degree or minute. Blanks are allowed around each part, a comma between the two. False beyond
// 90 and 180 degrees.
bool TakePosition(std::string_view& rest, AirspacePosition& position);

// Whether a text holds a record of an outline anywhere: "DC 5", "DA 10,270", "V X=", "V D=", or a
// DP, DB or DY with a position. Where a line end was lost, the next record stands so behind another
// one: "DP 48:00:00 N 010:00:00 EDC 5".
bool HasRecord(std::string_view text);

// Whether a text holds such a record, or a position without one.
bool HasOutline(std::string_view text);

// Whether a text is nothing, or begins as a comment that says so: "; corner", "# corner",
// "// corner", "(corner)", "\"corner\"".
bool IsMarked(std::string_view text);

// Whether what follows a complete line is nothing or such a comment, without a piece of an outline
// in it.
bool IsMarkedComment(std::string_view rest);

// Whether what follows a complete position is nothing or a comment without a piece of an outline: a
// marked one, or one that begins with a word. A digit that comes first is none, because the
// position may have been cut there.
bool IsComment(std::string_view rest);

// Appends a number in the fewest decimals, at most 9, that scale back to the value: number * scale
// == value. A value that 9 decimals do not reach is rounded to them; one that is not finite is 0.
void AppendScaled(std::string& text, double value, double scale);

// Appends degrees, minutes and seconds with the fewest decimals, at most 4, that are read back as
// the same semicircles.
void AppendPosition(std::string& text, AirspacePosition position);

}  // namespace skyhaul::openair
