#include "protocols/sentence/positions.h"

#include <cmath>
#include <optional>

#include "core/text/angles.h"
#include "core/text/digits.h"

namespace skyhaul {

namespace {

constexpr double kRadiansPerMinute = 0.0002908882086657;  // pi / 10800

// Degrees and minutes, written as one number, stay below these. Sixty minutes and more are taken.
constexpr double kLatitudeLimit = 8960;
constexpr double kLongitudeLimit = 17960;

SentenceCoordinate Split(double value, double per_unit, const char* hemispheres) {
  // Rounded once, on the smallest unit: 59.9996 minutes become the next degree and not 60 minutes.
  const auto n = static_cast<uint64_t>(std::floor(std::fabs(value) * per_unit + 0.5));
  // The hemisphere is that of the value before rounding: 0000.000 may be south.
  return {.degrees = static_cast<uint32_t>(n / 60000),
          .minutes = static_cast<uint32_t>(n / 1000 % 60),
          .thousandths = static_cast<uint32_t>(n % 1000),
          .hemisphere = hemispheres[value < 0 ? 1 : 0]};
}

// "4623.456,N": degrees to a width, two digits of minutes, three of thousandths.
std::string Format(const SentenceCoordinate& coordinate, size_t degree_digits) {
  return PaddedNumber(coordinate.degrees, degree_digits) + PaddedNumber(coordinate.minutes, 2) +
         '.' + PaddedNumber(coordinate.thousandths, 3) + ',' + coordinate.hemisphere;
}

int ParseCoordinate(std::string_view digits, std::string_view hemisphere, double limit,
                    const char* hemispheres, double& radians) {
  if (hemisphere.size() > 1) return -1;
  // An empty hemisphere is the positive one.
  const char letter = hemisphere.empty() ? hemispheres[0] : hemisphere[0];
  if (letter != hemispheres[0] && letter != hemispheres[1]) return -1;
  // "4623.456", or "00712.345"
  const std::optional<DegreesMinutes> angle = ReadDegreesMinutes(digits);
  if (!angle || angle->degrees * 100 + angle->minutes >= limit) return -1;
  radians = (angle->degrees * 60 + angle->minutes) * kRadiansPerMinute;
  if (letter == hemispheres[1]) radians = -radians;
  return 0;
}

}  // namespace

SentenceCoordinate SplitLatitude(double latitude, double per_unit) {
  return Split(latitude, per_unit, "NS");
}

SentenceCoordinate SplitLongitude(double longitude, double per_unit) {
  return Split(longitude, per_unit, "EW");
}

std::string FormatLatitude(double latitude, double per_unit) {
  return Format(SplitLatitude(latitude, per_unit), 2);
}

std::string FormatLongitude(double longitude, double per_unit) {
  return Format(SplitLongitude(longitude, per_unit), 3);
}

int ParseLatitude(std::string_view digits, std::string_view hemisphere, double& latitude_rad) {
  return ParseCoordinate(digits, hemisphere, kLatitudeLimit, "NS", latitude_rad);
}

int ParseLongitude(std::string_view digits, std::string_view hemisphere, double& longitude_rad) {
  return ParseCoordinate(digits, hemisphere, kLongitudeLimit, "EW", longitude_rad);
}

}  // namespace skyhaul
