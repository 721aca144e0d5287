#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace skyhaul {

// Letters of ASCII, without asking the locale. Every other character is left as it is.

inline constexpr bool IsLetter(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

inline constexpr char LowerLetter(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

inline constexpr char UpperLetter(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

inline std::string LowerCase(std::string_view text) {
  std::string lower(text);
  std::ranges::transform(lower, lower.begin(), LowerLetter);
  return lower;
}

inline std::string UpperCase(std::string_view text) {
  std::string upper(text);
  std::ranges::transform(upper, upper.begin(), UpperLetter);
  return upper;
}

// Whether two texts are the same but for capitals.
inline bool EqualIgnoringCase(std::string_view a, std::string_view b) {
  return std::ranges::equal(a, b, {}, LowerLetter, LowerLetter);
}

}  // namespace skyhaul
