#pragma once

#include <string>
#include <string_view>

namespace skyhaul {

// A file's bytes as UTF-8: text that is valid UTF-8 stays as it is without its byte order mark, any
// other is taken for Windows-1252, whose five unused codes become '?'.
std::string ToUtf8(std::string_view bytes);

// UTF-8 as plain ASCII: accented Latin letters become their plain letters, a few become two ("ß" is
// "ss"), and what has no plain form becomes '?'. Nothing is dropped.
std::string ToAscii(std::string_view utf8);

// UTF-8 as Windows-1252, for the programs that know nothing else. Characters that it lacks become
// their plain ASCII letters, or '?'; so does every byte that is not UTF-8.
std::string ToWindows1252(std::string_view utf8);

}  // namespace skyhaul
