#pragma once

#include <cstdint>
#include <optional>

namespace skyhaul {

struct FilePosition {
  int32_t lat = 0;  // semicircles, north positive; see core/units.h
  int32_t lon = 0;  // semicircles, east positive

  friend bool operator==(const FilePosition&, const FilePosition&) = default;
};

// Degrees, as files hold them, to the nearest semicircles. Empty beyond 90 degrees of latitude or
// 180 of longitude and for what is not a number. 180 east becomes the largest number that the type
// has, 9 mm west of it.
std::optional<FilePosition> PositionFromDegrees(double lat_deg, double lon_deg);

// The size of an angle, without its sign, in whole steps, halves up: 60,000 steps per degree are
// thousandths of a minute, 360,000 hundredths of a second. Files that write degrees and minutes cut
// these, so that no field can round up to 60.
uint64_t AngleInSteps(int32_t semicircles, uint32_t steps_per_degree);

}  // namespace skyhaul
