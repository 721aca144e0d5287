#include "formats/ozi/read_ozi.h"

#include <algorithm>
#include <array>
#include <utility>

#include "formats/ozi/ozi_text.h"
#include "formats/text/charset.h"
#include "formats/text/scan.h"
#include "formats/values/numbers.h"
#include "formats/values/pieces.h"
#include "formats/waypoints/position.h"

namespace skyhaul {

namespace {

constexpr std::string_view kMaker = "OziExplorer ";
constexpr std::string_view kFirstLine = "OziExplorer Waypoint File";
constexpr int kHeaderLines = 4;

// Fields counted from 0.
constexpr size_t kName = 1;
constexpr size_t kLatitude = 2;
constexpr size_t kLongitude = 3;
constexpr size_t kDay = 4;
constexpr size_t kDescription = 10;
constexpr size_t kAltitude = 14;
constexpr size_t kFields = 15;

using Fields = std::array<std::string_view, kFields>;

std::string ReadHeader(std::string_view& rest) {
  std::string_view line = TrimBlanks(TakeLine(rest));
  if (!line.starts_with(kFirstLine)) {
    if (!line.starts_with(kMaker)) return LineError(1, "not an OziExplorer waypoint file");
    line.remove_prefix(kMaker.size());
    return LineError(1, "this OziExplorer file is not of waypoints but a " + OneLine(line));
  }
  line = TakeLine(rest);
  line = TrimBlanks(TakeField(line, ','));
  if (!IsWgs84(line)) {
    return LineError(2, "the datum is \"" + OneLine(line) + "\", only WGS 84 can be read");
  }
  for (int i = 2; i < kHeaderLines; ++i) TakeLine(rest);
  return {};
}

Fields TakeFields(std::string_view line) {
  Fields fields;
  for (std::string_view& field : fields) field = TakeField(line, ',');
  return fields;
}

bool ReadPosition(const Fields& fields, FileWaypoint& waypoint) {
  double lat_deg = 0;
  double lon_deg = 0;
  if (!ReadNumber(fields[kLatitude], lat_deg) || !ReadNumber(fields[kLongitude], lon_deg)) {
    return false;
  }
  const auto position = PositionFromDegrees(lat_deg, lon_deg);
  if (!position) return false;
  waypoint.lat = position->lat;
  waypoint.lon = position->lon;
  return true;
}

// Reads a number that may be missing; false when something else stands there.
bool ReadOptional(std::string_view field, double& value) {
  return TrimBlanks(field).empty() || ReadNumber(field, value);
}

void ReadWaypoint(std::string_view line, int line_number, WaypointFile& file) {
  const Fields fields = TakeFields(line);
  FileWaypoint waypoint;
  if (!ReadPosition(fields, waypoint)) {
    file.notes.push_back(LineNote(line_number, "no position that can be read, skipped"));
    return;
  }
  double altitude_ft = kOziUnknownAltitude_ft;
  if (!ReadOptional(fields[kAltitude], altitude_ft)) {
    file.notes.push_back(LineNote(line_number, "altitude cannot be read"));
  }
  if (altitude_ft != kOziUnknownAltitude_ft) waypoint.altitude_m = altitude_ft * kMetresPerFoot;
  double day = 0;
  if (!ReadOptional(fields[kDay], day)) {
    file.notes.push_back(LineNote(line_number, "time cannot be read"));
  }
  waypoint.time = TimeFromSpreadsheetDay(day);
  waypoint.name = TextFromOzi(fields[kName]);
  waypoint.description = TextFromOzi(fields[kDescription]);
  file.waypoints.push_back(std::move(waypoint));
}

}  // namespace

bool LooksLikeOziWaypoints(std::string_view text) {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
  return text.substr(std::min(text.find_first_not_of(" \t"), text.size())).starts_with(kFirstLine);
}

int ReadOziWaypoints(std::string_view text, WaypointFile& file, std::string& message) {
  file = {};
  const std::string utf8 = ToUtf8(text);
  std::string_view rest = utf8;
  message = ReadHeader(rest);
  if (!message.empty()) return -1;
  int line_number = kHeaderLines;
  while (!rest.empty()) {
    ++line_number;
    const std::string_view line = TakeLine(rest);
    // Some programs end their files with the end-of-file character of old.
    if (line.find_first_not_of(" \t\x1a") == std::string_view::npos) continue;
    ReadWaypoint(line, line_number, file);
  }
  if (file.waypoints.empty() && !file.notes.empty()) {
    message = LineError(kHeaderLines + 1, "none of the waypoints can be read");
    file = {};
    return -1;
  }
  return static_cast<int>(file.waypoints.size());
}

}  // namespace skyhaul
