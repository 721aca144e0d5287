#pragma once

#include <string>
#include <system_error>

namespace skyhaul {

// The system's own words for an errno value.
inline std::string SystemReason(int error) {
  return std::generic_category().message(error);
}

}  // namespace skyhaul
