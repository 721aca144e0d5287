#pragma once

#include <string_view>

namespace skyhaul {

// Small steps of reading text. The Take functions take from the front of rest and leave what
// follows there. Blanks are spaces and tabs.

// Takes the next line, without its line end: LF, CR LF or a CR alone.
std::string_view TakeLine(std::string_view& rest);

// Takes the next word, skipping blanks before it. Empty when there is none.
std::string_view TakeWord(std::string_view& rest);

// Takes what stands before the separator; the separator goes too. Without one the whole rest is
// taken. A rest that is empty gives empty fields for ever.
std::string_view TakeField(std::string_view& rest, char separator);

void SkipBlanks(std::string_view& rest);

std::string_view TrimBlanks(std::string_view text);

}  // namespace skyhaul
