#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/platform.h"

namespace skyhaul {

// The candidate ports of a job whose port is chosen automatically: the system's list with the
// configured port moved to its head, or port 1 alone when the list is empty or unreadable.
std::vector<std::string> CandidatePorts(const Platform& platform, const std::string& configured);

// The ports at the last change of the system's devices.
struct PortMemory {
  bool seen = false;  // the list was read before
  std::vector<std::string> names;
};

// Called when the system's devices change, and once before. The first call only remembers the
// ports; later ones return the first port that was not there before, or, when nothing could be
// remembered, the one with the highest number. Returns an empty text when there is no new port.
std::string NewPort(const Platform& platform, PortMemory& memory);

}  // namespace skyhaul
