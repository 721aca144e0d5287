#include "formats/values/numbers.h"

#include <algorithm>
#include <charconv>

#include "formats/text/scan.h"

namespace skyhaul {

bool ReadNumber(std::string_view text, double& value) {
  return ParseDecimal(TrimBlanks(text), value) == 0;
}

int ReadWholeNumber(std::string_view text) {
  const auto is_digit = [](char c) { return c >= '0' && c <= '9'; };
  if (text.empty() || text.size() > 9) return -1;
  if (!std::all_of(text.begin(), text.end(), is_digit)) return -1;
  int number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

void AppendFixed(std::string& text, double value, int decimals) {
  constexpr size_t kLongest = 400;  // the largest double has 309 digits before its point
  char digits[kLongest];
  const std::to_chars_result result =
      std::to_chars(digits, digits + kLongest, value, std::chars_format::fixed, decimals);
  text.append(digits, result.ptr);
}

void AppendWhole(std::string& text, unsigned number, size_t width) {
  char digits[16];
  const std::to_chars_result result = std::to_chars(digits, digits + sizeof digits, number);
  const auto length = static_cast<size_t>(result.ptr - digits);
  if (length < width) text.append(width - length, '0');
  text.append(digits, length);
}

}  // namespace skyhaul
