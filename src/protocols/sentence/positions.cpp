#include "protocols/sentence/positions.h"

#include <cmath>
#include <cstdio>

namespace skyhaul {

namespace {

constexpr double kRadiansPerMinute = 0.0002908882086657;  // pi / 10800

// A digit is refused once the degrees and minutes read so far have reached the limit, so that they
// stay at or below 8959 and 17959.
constexpr uint32_t kLatitudeLimit = 896;
constexpr uint32_t kLongitudeLimit = 1796;

SentenceCoordinate Split(double value, double per_unit, const char* hemispheres) {
  const auto n = static_cast<uint64_t>(std::floor(std::fabs(value) * per_unit + 0.5));
  return {.degrees = static_cast<uint32_t>(n / 60000),
          .minutes = static_cast<uint32_t>(n / 1000 % 60),
          .thousandths = static_cast<uint32_t>(n % 1000),
          .hemisphere = hemispheres[value < 0 ? 1 : 0]};
}

std::string Format(const char* format, const SentenceCoordinate& coordinate) {
  char text[48];
  std::snprintf(text, sizeof text, format, coordinate.degrees, coordinate.minutes,
                coordinate.thousandths, coordinate.hemisphere);
  return text;
}

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

int ParseMinutes(std::string_view digits, uint32_t limit, double& minutes) {
  size_t i = 0;
  uint32_t whole = 0;
  for (; i < digits.size() && IsDigit(digits[i]); ++i) {
    if (whole >= limit) return -1;
    whole = whole * 10 + static_cast<uint32_t>(digits[i] - '0');
  }
  if (i == 0) return -1;
  const uint32_t whole_minutes = whole / 100 * 60 + whole % 100;
  minutes = whole_minutes;
  if (i < digits.size() && digits[i] == '.') ++i;
  double weight = 0.1;
  for (; i < digits.size() && IsDigit(digits[i]); ++i, weight /= 10) {
    minutes += weight * (digits[i] - '0');
  }
  return i == digits.size() ? 0 : -1;
}

int ParseCoordinate(std::string_view digits, std::string_view hemisphere, uint32_t limit,
                    const char* hemispheres, double& radians) {
  if (hemisphere.size() > 1) return -1;
  const char letter = hemisphere.empty() ? hemispheres[0] : hemisphere[0];
  if (letter != hemispheres[0] && letter != hemispheres[1]) return -1;
  double minutes = 0;
  if (ParseMinutes(digits, limit, minutes) != 0) return -1;
  radians = minutes * kRadiansPerMinute;
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
  return Format("%02u%02u.%03u,%c", SplitLatitude(latitude, per_unit));
}

std::string FormatLongitude(double longitude, double per_unit) {
  return Format("%03u%02u.%03u,%c", SplitLongitude(longitude, per_unit));
}

int ParseLatitude(std::string_view digits, std::string_view hemisphere, double& latitude_rad) {
  return ParseCoordinate(digits, hemisphere, kLatitudeLimit, "NS", latitude_rad);
}

int ParseLongitude(std::string_view digits, std::string_view hemisphere, double& longitude_rad) {
  return ParseCoordinate(digits, hemisphere, kLongitudeLimit, "EW", longitude_rad);
}

}  // namespace skyhaul
