#include "core/count_message.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace skyhaul {

std::string FormatCountMessage(std::string_view text, uint32_t first, uint32_t second,
                               uint32_t third, uint32_t fourth) {
  const std::array<uint32_t, 4> numbers = {first, second, third, fourth};
  std::string message;
  size_t next = 0;
  for (const char c : text) {
    if (c != '%') {
      message += c;
      continue;
    }
    message += std::to_string(numbers[next]);
    // "% of % flights" with 2 and 5 gives "2 of 5 flights". The fourth number stays for all further
    // places, so that no template reads beyond the array.
    next = std::min(next + 1, numbers.size() - 1);
  }
  return message;
}

}  // namespace skyhaul
