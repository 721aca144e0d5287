#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace skyhaul {

// Thousandths of a minute of arc in a degree and in a radian.
inline constexpr double kMilliminutesPerDegree = 60000.0;
inline constexpr double kMilliminutesPerRadian = 3437746.770785;

// A coordinate as sentences write it: degrees, minutes and thousandths of its absolute value
// rounded to the nearest thousandth of a minute, and the hemisphere of its sign before rounding.
struct SentenceCoordinate {
  uint32_t degrees = 0;
  uint32_t minutes = 0;
  uint32_t thousandths = 0;
  char hemisphere = 'N';
};

// per_unit is kMilliminutesPerDegree or kMilliminutesPerRadian, whichever the value is in.
SentenceCoordinate SplitLatitude(double latitude, double per_unit);
SentenceCoordinate SplitLongitude(double longitude, double per_unit);

// "DDMM.mmm,N" and "DDDMM.mmm,E".
std::string FormatLatitude(double latitude, double per_unit);
std::string FormatLongitude(double longitude, double per_unit);

// Reads "DDMM.mmm" and its hemisphere (one of the two letters, or empty for the positive one) into
// radians. Returns 0, or -1 when the text is not a coordinate: a latitude's degrees and minutes may
// not exceed 8959, a longitude's 17959.
int ParseLatitude(std::string_view digits, std::string_view hemisphere, double& latitude_rad);
int ParseLongitude(std::string_view digits, std::string_view hemisphere, double& longitude_rad);

}  // namespace skyhaul
