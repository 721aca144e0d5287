#include "formats/formatgeo/write_formatgeo.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string_view>

#include "core/geodesy/utm.h"
#include "core/text/charset.h"
#include "core/text/digits.h"
#include "core/text/printable.h"
#include "core/units.h"
#include "formats/common/position.h"
#include "formats/formatgeo/headings.h"

namespace skyhaul::formatgeo {

namespace {

constexpr std::string_view kLineEnd = "\r\n";
constexpr size_t kNameWidth = 8;

// Readers of these lists split a line at its blanks, and some take a quote for the beginning of a
// quoted text: a name is one word of plain letters, and never missing.
std::string NameColumn(std::string_view name) {
  std::string column = ToAscii(OneLine(name));
  std::erase_if(column, [](char c) { return c == '"' || c == '\''; });
  std::ranges::replace(column, ' ', '_');
  if (column.empty()) column = "_";
  // Longer names are not cut, because two cut ones could be the same.
  if (column.size() < kNameWidth) column.resize(kNameWidth, ' ');
  return column;
}

// "N 46 12 34.56"
std::string AngleText(int32_t semicircles, size_t degree_digits, const char* hemispheres) {
  constexpr uint32_t kHundredthsPerMinute = 6000;
  constexpr uint32_t kHundredthsPerDegree = 60 * kHundredthsPerMinute;
  // Rounded before it is split, so that no field can become 60.
  const uint64_t hundredths = AngleInSteps(semicircles, kHundredthsPerDegree);
  const uint64_t seconds = hundredths % kHundredthsPerMinute;
  return std::string(1, hemispheres[semicircles < 0 ? 1 : 0]) + ' ' +
         PaddedNumber(hundredths / kHundredthsPerDegree, degree_digits) + ' ' +
         PaddedNumber(hundredths % kHundredthsPerDegree / kHundredthsPerMinute, 2) + ' ' +
         PaddedNumber(seconds / 100, 2) + '.' + PaddedNumber(seconds % 100, 2);
}

// The altitude and the description, the same in both forms: the number ends in a fixed column.
std::string LineTail(const FileWaypoint& waypoint, size_t altitude_width) {
  // Five digits fit into the column.
  constexpr double kLimit_m = 99999;
  const double altitude_m = std::isnan(waypoint.altitude_m) ? 0 : waypoint.altitude_m;
  const std::string altitude =
      std::to_string(std::lround(std::clamp(altitude_m, -kLimit_m, kLimit_m)));
  // One blank at least parts the number from the position.
  std::string tail(altitude_width - std::min(altitude_width, altitude.size() + 1), ' ');
  tail += ' ' + altitude;
  const std::string description = ToAscii(OneLine(FurtherText(waypoint)));
  if (!description.empty()) tail += "  " + description;
  return tail.append(kLineEnd);
}

}  // namespace

std::string WriteGeo(std::span<const FileWaypoint> waypoints) {
  constexpr size_t kAltitudeWidth = 6;
  std::string text = std::string(kGeoHeading).append(kLineEnd);
  for (const FileWaypoint& waypoint : waypoints) {
    // B07001    N 46 12 34.56    E 007 08 09.12  1234  Cabane du Mont
    text += NameColumn(waypoint.name) + "  " + AngleText(waypoint.lat, 2, "NS") + "    " +
            AngleText(waypoint.lon, 3, "EW") + LineTail(waypoint, kAltitudeWidth);
  }
  return text;
}

std::string WriteUtm(std::span<const FileWaypoint> waypoints) {
  constexpr size_t kAltitudeWidth = 7;
  constexpr size_t kMetreDigits = 7;
  std::string text = std::string(kUtmHeading).append(kLineEnd);
  for (const FileWaypoint& waypoint : waypoints) {
    const UtmPosition utm =
        UtmFromDegrees(SemicirclesToDegrees(waypoint.lat), SemicirclesToDegrees(waypoint.lon));
    // B07001   32T   0356321   5119241   1234  Cabane du Mont
    text += NameColumn(waypoint.name) + ' ' + PaddedNumber(static_cast<uint64_t>(utm.zone), 2) +
            utm.band + "   " +
            PaddedNumber(static_cast<uint64_t>(std::llround(utm.easting_m)), kMetreDigits) + "   " +
            PaddedNumber(static_cast<uint64_t>(std::llround(utm.northing_m)), kMetreDigits) +
            LineTail(waypoint, kAltitudeWidth);
  }
  return text;
}

}  // namespace skyhaul::formatgeo
