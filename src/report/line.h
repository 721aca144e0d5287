#pragma once

#include <string>
#include <string_view>

namespace skyhaul {

// A line of a summary: a label of at most 15 characters, its value, a line feed.
inline std::string Line(std::string_view label, std::string_view value) {
  constexpr size_t kWidth = 16;
  std::string line(label);
  line.resize(kWidth, ' ');
  line += value.empty() ? "-" : value;
  return line + '\n';
}

}  // namespace skyhaul
