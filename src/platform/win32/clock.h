#pragma once

#include <cstdint>

#include "platform/platform.h"

namespace skyhaul {

// Milliseconds since the system started, in steps of up to 16; never goes back and never jumps with
// the wall clock.
uint64_t MonotonicMilliseconds();

ClockFunctions Win32Clock();

}  // namespace skyhaul
