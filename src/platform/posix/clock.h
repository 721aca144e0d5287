#pragma once

#include <cstdint>

#include "platform/platform.h"

namespace skyhaul {

// Milliseconds since an arbitrary moment; never goes back and never jumps with the wall clock.
uint64_t MonotonicMilliseconds();

ClockFunctions PosixClock();

}  // namespace skyhaul
