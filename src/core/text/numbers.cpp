#include "core/text/numbers.h"

#include <cstddef>

namespace skyhaul {

std::optional<double> ReadDecimal(std::string_view text) {
  // from_chars() knows no plus sign, which some files write.
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  // from_chars would take a second minus sign, exponents, "inf" and "nan".
  if (text.find_first_not_of("0123456789.") != std::string_view::npos) return std::nullopt;
  double value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  // Two points leave a rest, an empty text is an error.
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return negative ? -value : value;
}

void AppendFixed(std::string& text, double value, int decimals) {
  constexpr size_t kLongest = 400;  // the largest double has 309 digits before its point
  char digits[kLongest];
  const std::to_chars_result result =
      // Never the locale's comma: files have a point everywhere.
      std::to_chars(digits, digits + kLongest, value, std::chars_format::fixed, decimals);
  text.append(digits, result.ptr);
}

std::string FixedText(double value, int decimals) {
  std::string text;
  AppendFixed(text, value, decimals);
  return text;
}

}  // namespace skyhaul
