#include "core/text/scan.h"

#include <algorithm>

namespace skyhaul {

namespace {

constexpr std::string_view kBlanks = " \t";

}  // namespace

std::string_view TakeLine(std::string_view& rest) {
  // The text may end without a line end; then the whole rest is the line.
  const size_t length = std::min(rest.find_first_of("\r\n"), rest.size());
  const std::string_view line = rest.substr(0, length);
  rest.remove_prefix(length);
  // CR LF is one line end. LF CR is two, with an empty line between.
  rest.remove_prefix(rest.starts_with("\r\n") ? 2 : std::min<size_t>(rest.size(), 1));
  return line;
}

std::string_view TakeWord(std::string_view& rest) {
  SkipBlanks(rest);
  const std::string_view word = rest.substr(0, rest.find_first_of(kBlanks));
  rest.remove_prefix(word.size());
  return word;
}

std::string_view TakeField(std::string_view& rest, char separator) {
  // "a,b" gives "a" and leaves "b"; of "a," nothing is left, so that a trailing empty field cannot
  // be told from none.
  const size_t end = std::min(rest.find(separator), rest.size());
  const std::string_view field = rest.substr(0, end);
  rest.remove_prefix(std::min(end + 1, rest.size()));
  return field;
}

void SkipBlanks(std::string_view& rest) {
  rest.remove_prefix(std::min(rest.find_first_not_of(kBlanks), rest.size()));
}

std::string_view TrimBlanks(std::string_view text) {
  SkipBlanks(text);
  // Without any other character npos + 1 is 0, and the text is empty.
  return text.substr(0, text.find_last_not_of(kBlanks) + 1);
}

}  // namespace skyhaul
