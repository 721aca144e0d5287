#pragma once

#include <optional>
#include <vector>

#include "commands/session.h"

namespace skyhaul {

// The system's serial ports. Empty after a message when their list cannot be read.
std::optional<std::vector<PortInfo>> ListPorts(const Session& session);

}  // namespace skyhaul
