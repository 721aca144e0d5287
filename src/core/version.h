#pragma once

namespace skyhaul {

// The program version times 100: 10 is version 0.10.
inline constexpr int kVersionNumber = 10;

}  // namespace skyhaul
