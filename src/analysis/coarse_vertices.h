#pragma once

#include <array>
#include <cstdint>

namespace skyhaul {

// What a coarse search found: ascending indices of reduced points, not strictly where a triangle
// starts or ends at a turnpoint. count is 0 when there is nothing.
struct CoarseVertices {
  uint32_t count = 0;
  std::array<uint32_t, 5> points = {};
};

}  // namespace skyhaul
