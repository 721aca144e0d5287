#include "formats/common/position.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "core/units.h"

namespace skyhaul {

std::optional<FilePosition> PositionFromDegrees(double lat_deg, double lon_deg) {
  // Written so that a NaN is refused as well.
  if (!(std::fabs(lat_deg) <= 90 && std::fabs(lon_deg) <= 180)) return std::nullopt;
  return FilePosition{.lat = DegreesToSemicircles(lat_deg), .lon = DegreesToSemicircles(lon_deg)};
}

uint64_t AngleInSteps(int32_t semicircles, uint32_t steps_per_degree) {
  // At most 2^31 * 360,000: far from the end of 64 bits.
  // Made wide first, because 180 degrees west, -2^31, has no positive counterpart in 32.
  const auto magnitude = static_cast<uint64_t>(std::abs(int64_t{semicircles}));
  // 2^31 semicircles are 180 degrees; half of that, 2^30, rounds to the nearest step.
  return (magnitude * 180 * steps_per_degree + (uint64_t{1} << 30)) >> 31;
}

}  // namespace skyhaul
