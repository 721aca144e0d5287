#pragma once

#include <cstdint>
#include <string>

namespace skyhaul {

// The system's own words for an error number of GetLastError(), in one sentence without its full
// stop.
std::string SystemReason(uint32_t error);

}  // namespace skyhaul
