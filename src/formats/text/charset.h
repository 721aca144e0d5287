#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace skyhaul {

// A file's bytes as UTF-8: text that is valid UTF-8 stays as it is without its byte order mark, any
// other is taken for Windows-1252, whose five unused codes become '?'.
std::string ToUtf8(std::string_view bytes);

// UTF-8 as plain ASCII: accented Latin letters become their plain letters, a few become two ("ß" is
// "ss"), and what has no plain form becomes '?'. Nothing is dropped.
std::string ToAscii(std::string_view utf8);

// The first so many characters of a UTF-8 text, never half of one.
std::string FirstCharacters(std::string_view utf8, size_t count);

}  // namespace skyhaul
