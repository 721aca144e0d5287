#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace skyhaul {

// The command line's limits count characters of UTF-8 text, so that a name in Greek may be as long
// as one in English and no cut leaves half a character. Text that is not UTF-8 is taken as it is;
// kMaxBytesPerCharacter bounds it.
inline constexpr size_t kMaxBytesPerCharacter = 4;

// True for the first byte of a character, false for the bytes that continue it.
bool StartsCharacter(char byte);

// Appends a byte unless its character lies beyond the limit. seen counts the characters that were
// offered so far, the dropped ones too, and belongs to the text.
void AppendWithin(char byte, size_t max_characters, size_t& seen, std::string& text);

// The first characters of a text, at most max_characters.
std::string CutToCharacters(std::string_view text, size_t max_characters);

}  // namespace skyhaul
