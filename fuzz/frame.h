#pragma once

// What all fuzz targets share. A target is a file that defines Fuzz(); frame.cpp hands it the
// inputs.

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

namespace skyhaul {

// Checks all that must hold for this input.
void Fuzz(std::string_view input);

// Reports the input as a finding when the condition does not hold.
inline void Require(bool holds) {
  if (!holds) __builtin_trap();
}

// What every reader of a file promises: all that it counted, or -1, nothing and a message.
inline void RequireAllOrNothing(int count, size_t read, const std::string& message) {
  Require(message.empty() == (count >= 0));
  Require(count >= 0 ? read == static_cast<size_t>(count) : count == -1 && read == 0);
}

// Takes the first line off a text, without its line end.
inline std::string_view TakeLine(std::string_view& rest) {
  const std::string_view line = rest.substr(0, rest.find('\n'));
  rest.remove_prefix(std::min(line.size() + 1, rest.size()));
  return line;
}

}  // namespace skyhaul
