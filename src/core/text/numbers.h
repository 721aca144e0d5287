#pragma once

#include <charconv>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

namespace skyhaul {

// Numbers as files, clients and JSON hold them: with a decimal point, whatever the locale says.

// Reads a text that is one decimal number: "12", "-3.5", "+.25". Empty for anything else: blanks,
// exponents, infinities.
std::optional<double> ReadDecimal(std::string_view text);

// Reads a text that is one whole number with an optional minus sign. Empty for anything else and
// for a number that the type cannot hold.
template <typename Integer>
std::optional<Integer> ReadInteger(std::string_view text) {
  Integer number = 0;
  const char* const end = text.data() + text.size();
  const std::from_chars_result result = std::from_chars(text.data(), end, number);
  if (result.ec != std::errc() || result.ptr != end) return std::nullopt;
  return number;
}

// A number with exactly so many decimals, correctly rounded. One that is not finite gives "inf" or
// "nan": ask before.
void AppendFixed(std::string& text, double value, int decimals);
std::string FixedText(double value, int decimals);

}  // namespace skyhaul
