#include "formats/ozi/write_ozi.h"

#include <cmath>
#include <limits>

#include "core/text/numbers.h"
#include "core/units.h"
#include "formats/common/position.h"
#include "formats/ozi/ozi_text.h"

namespace skyhaul::ozi {

namespace {

constexpr size_t kDescriptionLength = 40;
constexpr size_t kAnyLength = std::numeric_limits<size_t>::max();
constexpr int kPositionDecimals = 8;  // a semicircle is 8.4e-8 degrees

// Whole feet; a place at the altitude that stands for "not known" is written one foot higher.
void AppendAltitude(std::string& text, double altitude_m) {
  const double altitude_ft = std::round(altitude_m / kMetresPerFoot);
  AppendFixed(text, altitude_ft == kUnknownAltitude_ft ? altitude_ft + 1 : altitude_ft, 0);
}

// -1,FIESCH,46.12345000,7.12345000,45413.5242593,0,1,3,0,65535,Take-off,0,0,0,7694,6,0,17
void AppendWaypoint(std::string& text, const FileWaypoint& waypoint) {
  text += "-1,";  // no place in a receiver's memory
  text += TextToField(waypoint.name, kAnyLength);
  text += ',';
  AppendFixed(text, SemicirclesToDegrees(waypoint.lat), kPositionDecimals);
  text += ',';
  AppendFixed(text, SemicirclesToDegrees(waypoint.lon), kPositionDecimals);
  text += ',';
  // An empty field stands for no time; 0 itself would be written as a day of 1989.
  if (waypoint.time != 0) AppendSpreadsheetDay(text, waypoint.time, 0);
  // Symbol 0, status 1, shown as name with dot, black on yellow.
  text += ",0,1,3,0,65535,";
  text += TextToField(FurtherText(waypoint), kDescriptionLength);
  text += ",0,0,0,";  // pointer direction, receiver's display format, proximity distance
  AppendAltitude(text, waypoint.altitude_m);
  text += ",6,0,17\r\n";  // font size and style, symbol size
}

}  // namespace

std::string WriteWaypoints(std::span<const FileWaypoint> waypoints) {
  std::string text =
      "OziExplorer Waypoint File Version 1.1\r\nWGS 84\r\nReserved 2\r\nReserved 3\r\n";
  for (const FileWaypoint& waypoint : waypoints) AppendWaypoint(text, waypoint);
  return text;
}

}  // namespace skyhaul::ozi
