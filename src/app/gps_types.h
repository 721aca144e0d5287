#pragma once

#include <cstdint>

#include "app/command_line/settings_block.h"

namespace skyhaul {

// The protocol type that a job for this kind of instrument runs with.
uint32_t ProtocolOf(GpsType type, bool usb);

}  // namespace skyhaul
