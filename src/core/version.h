#pragma once

#include <string>

#include "core/text/digits.h"

namespace skyhaul {

// The program version times 100: 10 is version 0.10. cmake/Version.cmake reads this line, so that
// the packages carry the same version.
inline constexpr int kVersionNumber = 10;

// "0.10"
inline std::string VersionText() {
  return std::to_string(kVersionNumber / 100) + '.' + PaddedNumber(kVersionNumber % 100, 2);
}

}  // namespace skyhaul
