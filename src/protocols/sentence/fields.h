#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace skyhaul {

// Cuts the field before the next comma off the front of rest. Returns true with the field; false,
// with rest as it was, when there is no comma any more.
bool SplitField(std::string_view& rest, std::string_view& field);

// The fields of a line, cut at each comma; the last one allowed takes the rest, commas included.
// An empty line is one empty field.
std::vector<std::string_view> SplitFields(std::string_view line, size_t max_fields);

// Reads an unsigned decimal number with blanks allowed around it; an empty or all-blank text is 0.
// Returns 0, or -1 for any other character or when a digit would be added to more than 214748364.
int ParseUintField(std::string_view text, uint32_t& value);

}  // namespace skyhaul
