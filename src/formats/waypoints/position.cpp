#include "formats/waypoints/position.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>

namespace skyhaul {

namespace {

constexpr double kSemicirclesPerDegree = 2147483648.0 / 180;

int32_t SemicirclesFromDegrees(double degrees) {
  constexpr double kMax = std::numeric_limits<int32_t>::max();
  return static_cast<int32_t>(std::min(std::round(degrees * kSemicirclesPerDegree), kMax));
}

}  // namespace

std::optional<FilePosition> PositionFromDegrees(double lat_deg, double lon_deg) {
  // Written so that a NaN is refused as well.
  if (!(std::fabs(lat_deg) <= 90 && std::fabs(lon_deg) <= 180)) return std::nullopt;
  return FilePosition{.lat = SemicirclesFromDegrees(lat_deg),
                      .lon = SemicirclesFromDegrees(lon_deg)};
}

double DegreesFromSemicircles(int32_t semicircles) {
  return semicircles / kSemicirclesPerDegree;
}

int64_t AngleInSteps(int32_t semicircles, int32_t steps_per_degree) {
  // At most 2^31 * 360,000: far from the end of 64 bits.
  const int64_t magnitude = std::abs(int64_t{semicircles});
  return (magnitude * 180 * steps_per_degree + (int64_t{1} << 30)) >> 31;
}

std::string PaddedNumber(int64_t number, size_t width) {
  const std::string digits = std::to_string(number);
  return std::string(width - std::min(width, digits.size()), '0') + digits;
}

}  // namespace skyhaul
