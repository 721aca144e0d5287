#pragma once

#include "platform/platform.h"

namespace skyhaul {

// Terminal devices. A handle is the descriptor of the opened device. The context of the functions
// may point to the PortSharing (platform/posix/lock_file.h) that is to hold.
SerialFunctions PosixSerial();

}  // namespace skyhaul
