#pragma once

namespace skyhaul {

// The program version times 100: 10 is version 0.10. cmake/Version.cmake reads this line, so that
// the packages carry the same version.
inline constexpr int kVersionNumber = 10;

}  // namespace skyhaul
