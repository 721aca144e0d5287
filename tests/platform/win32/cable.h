#pragma once

#include <cstdio>
#include <cstdlib>

#include "tests/platform/cable.h"

namespace skyhaul {

// The cables that with-com-ports lays: two ports that hear each other, one on each side of the
// number where the names change, and two more whose cable can be pulled out.
inline constexpr uint32_t kCablePorts[] = {9, 10};
inline constexpr uint32_t kLooseCablePorts[] = {11, 12};

std::string ComPort(uint32_t number);

// Pulls the loose cable out, a moment later.
inline void PullLooseCable() {
  std::FILE* file = std::fopen(std::getenv("SKYHAUL_UNPLUG"), "wb");
  ASSERT_NE(file, nullptr);
  std::fclose(file);
}

}  // namespace skyhaul
