#include "formats/formatgeo/read_formatgeo.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "core/geodesy/utm.h"
#include "core/text/charset.h"
#include "core/text/digits.h"
#include "core/text/letter_case.h"
#include "core/text/numbers.h"
#include "core/text/printable.h"
#include "core/text/scan.h"
#include "formats/common/messages.h"
#include "formats/common/position.h"
#include "formats/formatgeo/headings.h"

namespace skyhaul::formatgeo {

namespace {

constexpr double kHighest_m = 100000;

// Takes a position off the front of a line, or nothing.
using PositionTaker = std::optional<FilePosition>(std::string_view& rest);

struct Angle {
  double degrees = 0;
  int fields = 0;  // degrees, minutes, seconds: how many of them were there
};

// Takes a number without sign, or nothing.
std::optional<double> TakeNumber(std::string_view& rest) {
  std::string_view after = rest;
  const std::string_view word = TakeWord(after);
  // The hemisphere is the sign, and the zone has its own origin, so no number here is negative.
  const std::optional<double> number = word.starts_with('-') ? std::nullopt : ReadDecimal(word);
  if (number) rest = after;
  return number;
}

// Takes a hemisphere and up to max_fields numbers.
// "N 46 12 34.56"
std::optional<Angle> TakeAngle(std::string_view& rest, char positive, char negative,
                               int max_fields) {
  const std::string_view hemisphere = TakeWord(rest);
  if (hemisphere.size() != 1) return std::nullopt;
  if (hemisphere[0] != positive && hemisphere[0] != negative) return std::nullopt;
  Angle angle;
  double unit = 1;
  while (angle.fields < max_fields) {
    const std::optional<double> number = TakeNumber(rest);
    if (!number) break;
    // Sixty itself is what rounding programs write.
    if (angle.fields > 0 && *number > 60) return std::nullopt;
    angle.degrees += *number * unit;
    unit /= 60;
    ++angle.fields;
  }
  if (hemisphere[0] == negative) angle.degrees = -angle.degrees;
  return angle.fields > 0 ? std::optional(angle) : std::nullopt;
}

// "N 46 12 34.56    E 007 08 09.12", "N 46 12.576 E 7 8.152" or "N 46.2096 E 7.1359"
std::optional<FilePosition> TakeGeo(std::string_view& rest) {
  constexpr int kAllFields = 3;
  const std::optional<Angle> lat = TakeAngle(rest, 'N', 'S', kAllFields);
  if (!lat) return std::nullopt;
  // As many fields as the latitude has: the altitude after them is a number as well.
  const std::optional<Angle> lon = TakeAngle(rest, 'E', 'W', lat->fields);
  if (!lon || lon->fields != lat->fields) return std::nullopt;
  return PositionFromDegrees(lat->degrees, lon->degrees);
}

// Takes "32T" or "32 T". Returns false when there is neither.
bool TakeZone(std::string_view& rest, UtmPosition& utm) {
  std::string_view word = TakeWord(rest);
  const size_t digits = std::min(word.find_first_not_of("0123456789"), word.size());
  const int zone = ReadWholeNumber(word.substr(0, digits));
  // Without a digit the number is negative: the word is part of a name.
  if (digits > 2 || zone < 0) return false;
  word.remove_prefix(digits);
  if (word.empty()) word = TakeWord(rest);
  if (word.size() != 1) return false;
  utm.zone = zone;
  utm.band = word[0];
  return true;
}

// "32T   0356321   5119241"
std::optional<FilePosition> TakeUtm(std::string_view& rest) {
  UtmPosition utm;
  if (!TakeZone(rest, utm)) return std::nullopt;
  const std::optional<double> easting_m = TakeNumber(rest);
  const std::optional<double> northing_m = TakeNumber(rest);
  if (!easting_m || !northing_m) return std::nullopt;
  utm.easting_m = *easting_m;
  utm.northing_m = *northing_m;
  const std::optional<UtmDegrees> degrees = DegreesFromUtm(utm);
  // A band letter that does not fit the northing shows that one of both is wrong.
  if (!degrees) return std::nullopt;
  return PositionFromDegrees(degrees->lat_deg, degrees->lon_deg);
}

// "B07001    N 46 12 34.56    E 007 08 09.12  1234  Cabane du Mont". A name may have blanks in it,
// so the position is looked for from every word on. Returns an empty text, or what is wrong with
// the line.
std::string_view ReadLine(std::string_view line, PositionTaker& take_position,
                          FileWaypoint& waypoint) {
  std::optional<FilePosition> position;
  std::string_view from = line;
  std::string_view rest;
  while (!position) {
    from = from.substr(std::min(from.find_first_not_of(" \t"), from.size()));
    if (from.empty()) return "there is no position on it";
    rest = from;
    position = take_position(rest);
    // Not yet: the word belongs to the name, which may itself be an "N" or a number.
    if (!position) TakeWord(from);
  }
  waypoint = {.lat = position->lat, .lon = position->lon};
  waypoint.name = TrimBlanks(line.substr(0, line.size() - from.size()));
  const std::string_view altitude = TakeWord(rest);
  // A line may end after the position.
  const std::optional<double> altitude_m = altitude.empty() ? 0 : ReadDecimal(altitude);
  if (!altitude_m || std::fabs(*altitude_m) > kHighest_m) return "the altitude cannot be read";
  waypoint.altitude_m = *altitude_m;
  waypoint.description = TrimBlanks(rest);
  return {};
}

// Takes lines up to the heading. Returns its number, or minus the number of the line that stands in
// its place.
int TakeHeading(std::string_view& rest, std::string_view heading) {
  for (int number = 1; !rest.empty(); ++number) {
    const std::string_view line = TrimBlanks(TakeLine(rest));
    if (EqualIgnoringCase(line.substr(0, heading.size()), heading)) return number;
    // Only blank lines may stand before the heading: it is what tells the lists apart.
    if (!line.empty()) return -number;
  }
  return -1;
}

int ReadList(std::string_view text, std::string_view heading, PositionTaker& take_position,
             WaypointFile& file, std::string& message) {
  file = {};
  message.clear();
  const std::string utf8 = ToUtf8(text);
  std::string_view rest = utf8;
  int number = TakeHeading(rest, heading);
  if (number < 0) {
    message = LineError(-number, "not the heading " + std::string(heading));
    return -1;
  }
  std::string first_fault;
  while (!rest.empty()) {
    const std::string line = OneLine(TakeLine(rest));
    ++number;
    // Blank lines count for the numbers of the notes.
    if (line.empty()) continue;
    FileWaypoint waypoint;
    const std::string_view fault = ReadLine(line, take_position, waypoint);
    if (fault.empty()) {
      file.waypoints.push_back(std::move(waypoint));
    } else {
      if (first_fault.empty()) first_fault = LineError(number, fault);
      file.notes.push_back(LineNote(number, std::string(fault) + "; skipped"));
    }
  }
  // A heading alone is an empty list; lines of which none can be read are another kind of file.
  if (file.waypoints.empty() && !first_fault.empty()) {
    file = {};
    message = first_fault;
    return -1;
  }
  return static_cast<int>(file.waypoints.size());
}

bool StartsWithHeading(std::string_view text, std::string_view heading) {
  const std::string utf8 = ToUtf8(text);
  std::string_view rest = utf8;
  return TakeHeading(rest, heading) > 0;
}

}  // namespace

bool LooksLikeGeo(std::string_view text) {
  return StartsWithHeading(text, kGeoHeading);
}

bool LooksLikeUtm(std::string_view text) {
  return StartsWithHeading(text, kUtmHeading);
}

int ReadGeo(std::string_view text, WaypointFile& file, std::string& message) {
  return ReadList(text, kGeoHeading, TakeGeo, file, message);
}

int ReadUtm(std::string_view text, WaypointFile& file, std::string& message) {
  return ReadList(text, kUtmHeading, TakeUtm, file, message);
}

}  // namespace skyhaul::formatgeo
