#pragma once

namespace skyhaul {

inline constexpr int kExitDone = 0;
inline constexpr int kExitFailed = 1;
inline constexpr int kExitBadCommandLine = 2;

}  // namespace skyhaul
