#include "formats/compegps/write_compegps.h"

#include <algorithm>
#include <cmath>

#include "core/text/charset.h"
#include "core/text/numbers.h"
#include "core/text/printable.h"
#include "core/units.h"
#include "formats/common/position.h"
#include "formats/compegps/compegps_time.h"

namespace skyhaul::compegps {

namespace {

constexpr char kDegreeSign = '\xBA';  // the ordinal sign, which stands there by custom
constexpr int kPositionDecimals = 10;
constexpr int kAltitudeDecimals = 6;

// A name is one word.
std::string NameWord(std::string_view name) {
  std::string word = ToWindows1252(OneLine(name));
  std::replace(word.begin(), word.end(), ' ', '_');
  return word.empty() ? "_" : word;
}

void AppendAngle(std::string& text, int32_t semicircles, std::string_view hemispheres) {
  AppendFixed(text, std::abs(SemicirclesToDegrees(semicircles)), kPositionDecimals);
  text += kDegreeSign;
  text += hemispheres[semicircles < 0 ? 1 : 0];
  text += ' ';
}

void AppendWaypoint(std::string& text, const FileWaypoint& waypoint) {
  text += "W  " + NameWord(waypoint.name) + " A ";
  AppendAngle(text, waypoint.lat, "NS");
  AppendAngle(text, waypoint.lon, "EW");
  AppendTime(text, waypoint.time);
  text += ' ';
  AppendFixed(text, waypoint.altitude_m, kAltitudeDecimals);
  text += ' ';
  text += ToWindows1252(OneLine(FurtherText(waypoint)));
  text += "\r\n";
}

}  // namespace

std::string Write(std::span<const FileWaypoint> waypoints) {
  std::string text = "G  WGS 84\r\nU  1\r\n";
  for (const FileWaypoint& waypoint : waypoints) AppendWaypoint(text, waypoint);
  return text;
}

}  // namespace skyhaul::compegps
