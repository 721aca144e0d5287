#include "formats/text/scan.h"

#include <algorithm>
#include <charconv>
#include <system_error>

namespace skyhaul {

namespace {

constexpr std::string_view kBlanks = " \t";

char LowerCase(char character) {
  return static_cast<char>(character >= 'A' && character <= 'Z' ? character - 'A' + 'a'
                                                                : character);
}

}  // namespace

std::string_view TakeLine(std::string_view& rest) {
  const size_t length = std::min(rest.find_first_of("\r\n"), rest.size());
  const std::string_view line = rest.substr(0, length);
  rest.remove_prefix(length);
  rest.remove_prefix(rest.starts_with("\r\n") ? 2 : std::min<size_t>(rest.size(), 1));
  return line;
}

std::string_view TakeWord(std::string_view& rest) {
  rest.remove_prefix(std::min(rest.find_first_not_of(kBlanks), rest.size()));
  const std::string_view word = rest.substr(0, rest.find_first_of(kBlanks));
  rest.remove_prefix(word.size());
  return word;
}

std::string_view TrimBlanks(std::string_view text) {
  const size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

int ParseDecimal(std::string_view text, double& number) {
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  // Keeps out a second sign and the words that from_chars knows.
  if (text.find_first_not_of("0123456789.") != std::string_view::npos) return -1;
  double value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size()) return -1;
  number = negative ? -value : value;
  return 0;
}

bool EqualIgnoringCase(std::string_view a, std::string_view b) {
  return std::ranges::equal(a, b, {}, LowerCase, LowerCase);
}

std::string OneLine(std::string_view text) {
  std::string line(text);
  std::ranges::replace_if(
      line, [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7F'; }, ' ');
  return std::string(TrimBlanks(line));
}

}  // namespace skyhaul
