#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace skyhaul {

struct FilePosition {
  int32_t lat = 0;  // semicircles, north positive; see core/units.h
  int32_t lon = 0;  // semicircles, east positive

  friend bool operator==(const FilePosition&, const FilePosition&) = default;
};

// Degrees, as files hold them, to the nearest semicircles. Nothing beyond 90 degrees of latitude or
// 180 of longitude is a position; 180 east itself becomes the largest number there is, 9 mm before
// it.
std::optional<FilePosition> PositionFromDegrees(double lat_deg, double lon_deg);

// The size of an angle, without its sign, in whole steps, halves up: 60,000 steps per degree are
// thousandths of a minute, 360,000 hundredths of a second. Files that write degrees and minutes cut
// these, so that no field can round up to 60.
int64_t AngleInSteps(int32_t semicircles, int32_t steps_per_degree);

// A number with leading zeros up to a width; no sign.
std::string PaddedNumber(int64_t number, size_t width);

}  // namespace skyhaul
