#pragma once

#include "platform/platform.h"

namespace skyhaul {

// COM ports with overlapped input and output. A handle is the address of a SerialPort.
SerialFunctions Win32Serial();

}  // namespace skyhaul
