#pragma once

#include <cstdint>

#include "platform/platform.h"
#include "platform/win32/windows_api.h"

namespace skyhaul {

// Puts the settings into a port's state; what they do not speak of stays as it was.
// Returns 0, or -1 for a speed that the program does not use.
int SetLine(DCB& state, const SerialSettings& settings);

// A read ends after kReadWait_ms or when its buffer is full, whichever comes first. A write may
// take the time that the seam promises.
COMMTIMEOUTS TimeoutsFor(uint32_t baud);

}  // namespace skyhaul
