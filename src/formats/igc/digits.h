#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace skyhaul {

// Decimal digits as IGC records and file names hold them: fixed columns, ASCII, no sign. They stand
// here as inline code because a flight consists of little else.

// Reads count (at most 9) digits at a column, which must exist. Returns the number, or -1 when one
// of the characters is not a digit.
inline int ReadDigits(std::string_view line, size_t column, size_t count) {
  unsigned number = 0;
  bool good = true;
  for (size_t i = 0; i < count; ++i) {
    const unsigned digit = static_cast<unsigned char>(line[column + i]) - unsigned{'0'};
    good = good && digit <= 9;
    number = number * 10 + digit;
  }
  return good ? static_cast<int>(number) : -1;
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
inline void AppendNumber(std::string& text, uint32_t number, size_t width = 1) {
  const std::string digits = std::to_string(number);
  if (digits.size() < width) text.append(width - digits.size(), '0');
  text += digits;
}

}  // namespace skyhaul
