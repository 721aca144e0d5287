#pragma once

#include <string>

#include "platform/platform.h"

namespace skyhaul {

// SerialFunctions::open: a port for this program alone, held by every lock that other programs look
// at. The context is a PortSharing, or null for the system's usual places. The handle is the
// port's descriptor.
PortOpening OpenPosixPort(void* context, const std::string& name);

}  // namespace skyhaul
