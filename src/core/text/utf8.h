#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace skyhaul {

// What TakeCharacter returns for a byte that belongs to no valid character.
inline constexpr uint32_t kNoCharacter = 0xFFFFFFFF;

// Takes one character off the front of a text that is not empty and returns its code. A byte that
// belongs to no valid character, an overlong form or half of a surrogate pair among them, is taken
// alone and gives kNoCharacter.
uint32_t TakeCharacter(std::string_view& text);

bool IsUtf8(std::string_view text);

// How many characters a text has; bytes that belong to none count one each.
size_t CountCharacters(std::string_view utf8);

// The first so many characters of a text, never half of one.
std::string FirstCharacters(std::string_view utf8, size_t count);

// Appends a character; codes below 0x10000 only.
void AppendUtf8(std::string& text, uint32_t code);

}  // namespace skyhaul
