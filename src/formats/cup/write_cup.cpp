#include "formats/cup/write_cup.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string_view>

#include "core/text/digits.h"
#include "core/text/numbers.h"
#include "formats/common/position.h"
#include "formats/cup/quoted_fields.h"

namespace skyhaul::cup {

namespace {

constexpr char kOrdinaryStyle[] = "1";
constexpr char kSolidRunwayStyle[] = "5";

// "4621.666N", "01410.332E"
std::string AngleText(int32_t semicircles, size_t degree_digits, const char* hemispheres) {
  constexpr uint32_t kMilliminutesPerDegree = 60000;
  // Rounded before it is split, so that no minute can be written as 60.000.
  const uint64_t milliminutes = AngleInSteps(semicircles, kMilliminutesPerDegree);
  const uint64_t minute_part = milliminutes % kMilliminutesPerDegree;
  return PaddedNumber(milliminutes / kMilliminutesPerDegree, degree_digits) +
         PaddedNumber(minute_part / 1000, 2) + '.' + PaddedNumber(minute_part % 1000, 3) +
         hemispheres[semicircles < 0 ? 1 : 0];
}

std::string ElevationText(double altitude_m) {
  // Far beyond any place; only keeps a broken record from filling the line with digits.
  constexpr double kLimit_m = 1e9;
  const double clamped = std::isnan(altitude_m) ? 0 : std::clamp(altitude_m, -kLimit_m, kLimit_m);
  // Adding zero makes a negative zero, which "-0.04" rounds to, a plain one.
  return FixedText(std::round(clamped * 10) / 10 + 0.0, 1) + 'm';
}

}  // namespace

std::string Write(std::span<const FileWaypoint> waypoints) {
  // The old list of columns, without the runway width: readers of either list know these names.
  std::string text = "name,code,country,lat,lon,elev,style,rwdir,rwlen,freq,desc\r\n";
  // "Lesce-Bled","LJBL",,4621.666N,01410.332E,504.0m,5,,,,"Home field"
  for (const FileWaypoint& waypoint : waypoints) {
    // Readers show the name and instruments the code, so that both are filled.
    const std::string description = QuoteField(waypoint.description);
    const std::string code = QuoteField(waypoint.name);
    text += (waypoint.description.empty() ? code : description) + ',' + code + ",,";
    text += AngleText(waypoint.lat, 2, "NS") + ',' + AngleText(waypoint.lon, 3, "EW") + ',';
    text += ElevationText(waypoint.altitude_m) + ',';
    // The program does not know the surface, and a landing place should not be shown as an ordinary
    // point.
    text += waypoint.type == kWaypointAirfield ? kSolidRunwayStyle : kOrdinaryStyle;
    // Runway direction, runway length and frequency stay empty.
    text += ",,,," + QuoteField(waypoint.comment) + "\r\n";
  }
  return text;
}

}  // namespace skyhaul::cup
