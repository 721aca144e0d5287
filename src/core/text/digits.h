#pragma once

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace skyhaul {

// Decimal digits in fixed columns and with leading zeros, without asking the locale. The functions
// are inline because a flight's text consists of little else.

inline constexpr bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

// Reads count (at most 9) digits at a column; the text must reach that far. Returns the number, or
// -1 when one of the characters is not a digit.
inline int ReadDigits(std::string_view text, size_t column, size_t count) {
  unsigned number = 0;
  bool good = true;
  for (size_t i = 0; i < count; ++i) {
    const unsigned digit = static_cast<unsigned char>(text[column + i]) - unsigned{'0'};
    good = good && digit <= 9;
    number = number * 10 + digit;
  }
  return good ? static_cast<int>(number) : -1;
}

// Reads a text of 1 to 9 digits and nothing else. Returns the number, or -1 for any other text.
inline int ReadWholeNumber(std::string_view text) {
  return text.empty() || text.size() > 9 ? -1 : ReadDigits(text, 0, text.size());
}

// Writes the last count digits of a number, with leading zeros. Returns the place after them.
inline char* PutDigits(char* place, uint32_t number, size_t count) {
  for (size_t i = count; i > 0; --i) {
    place[i - 1] = static_cast<char>('0' + number % 10);
    number /= 10;
  }
  return place + count;
}

// Appends a number with leading zeros up to a width; a longer number is written in full.
inline void AppendPadded(std::string& text, uint64_t number, size_t width) {
  char digits[20];  // the largest number has as many
  const char* const end = std::to_chars(digits, digits + sizeof digits, number).ptr;
  const auto length = static_cast<size_t>(end - digits);
  if (length < width) text.append(width - length, '0');
  text.append(digits, length);
}

inline std::string PaddedNumber(uint64_t number, size_t width) {
  std::string text;
  AppendPadded(text, number, width);
  return text;
}

}  // namespace skyhaul
