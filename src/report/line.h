#pragma once

#include <string>
#include <string_view>

#include "core/text/printable.h"

namespace skyhaul {

// A line of a summary: a label of at most 15 characters, its value, a line feed.
inline std::string Line(std::string_view label, std::string_view value) {
  constexpr size_t kWidth = 16;
  std::string line(label);
  line.resize(kWidth, ' ');
  // A file's name may have a line feed in it, and would forge a line.
  const std::string shown = PrintableText(value);
  line += shown.empty() ? "-" : shown;
  return line + '\n';
}

}  // namespace skyhaul
