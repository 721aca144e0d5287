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
  // A blank would end the name, and without one the "A" behind it would be the name.
  std::replace(word.begin(), word.end(), ' ', '_');
  return word.empty() ? "_" : word;
}

// 46.1234500000ºN, without a sign: the letter says the hemisphere.
void AppendAngle(std::string& text, int32_t semicircles, std::string_view hemispheres) {
  AppendFixed(text, std::abs(SemicirclesToDegrees(semicircles)), kPositionDecimals);
  text += kDegreeSign;
  text += hemispheres[semicircles < 0 ? 1 : 0];
  text += ' ';
}

// W  FIESCH A 46.1234500000ºN 7.1234500000ºE 01-MAY-24 12:34:56 2345.000000 Take-off
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
  // "U  1": degrees
  std::string text = "G  WGS 84\r\nU  1\r\n";
  for (const FileWaypoint& waypoint : waypoints) AppendWaypoint(text, waypoint);
  return text;
}

}  // namespace skyhaul::compegps
