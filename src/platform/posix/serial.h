#pragma once

#include "platform/platform.h"

namespace skyhaul {

// Terminal devices. A handle is the descriptor of the opened device.
SerialFunctions PosixSerial();

}  // namespace skyhaul
