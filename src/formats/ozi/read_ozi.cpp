#include "formats/ozi/read_ozi.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include "core/text/charset.h"
#include "core/text/numbers.h"
#include "core/text/printable.h"
#include "core/text/scan.h"
#include "core/units.h"
#include "formats/common/messages.h"
#include "formats/common/position.h"
#include "formats/ozi/ozi_text.h"

namespace skyhaul::ozi {

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

// OziExplorer Waypoint File Version 1.1
// WGS 84
// Reserved 2
// Reserved 3
std::string ReadHeader(std::string_view& rest) {
  std::string_view line = TrimBlanks(TakeLine(rest));
  if (!line.starts_with(kFirstLine)) {
    // The same program has tracks and routes, with such a first line too: naming the
    // kind says more.
    if (!line.starts_with(kMaker)) return LineError(1, "not an OziExplorer waypoint file");
    line.remove_prefix(kMaker.size());
    return LineError(1, "this OziExplorer file is not of waypoints but a " + OneLine(line));
  }
  line = TakeLine(rest);
  // Anything behind a comma is not part of the datum.
  line = TrimBlanks(TakeField(line, ','));
  for (int i = 2; i < kHeaderLines; ++i) TakeLine(rest);
  return DatumError(2, line);
}

// A line may be short: fields that are missing are empty.
Fields TakeFields(std::string_view line) {
  Fields fields;
  for (std::string_view& field : fields) field = TakeField(line, ',');
  return fields;
}

bool ReadPosition(const Fields& fields, FileWaypoint& waypoint) {
  const std::optional<double> lat_deg = ReadDecimal(TrimBlanks(fields[kLatitude]));
  const std::optional<double> lon_deg = ReadDecimal(TrimBlanks(fields[kLongitude]));
  if (!lat_deg || !lon_deg) return false;
  const auto position = PositionFromDegrees(*lat_deg, *lon_deg);
  if (!position) return false;
  waypoint.lat = position->lat;
  waypoint.lon = position->lon;
  return true;
}

// A number that may be missing, which gives the value for it; empty when something else stands
// there.
std::optional<double> ReadOptional(std::string_view field, double missing) {
  const std::string_view text = TrimBlanks(field);
  return text.empty() ? missing : ReadDecimal(text);
}

// "-1,FIESCH,46.12345000,7.12345000,45413.5242593,0,1,3,0,65535,Take-off,0,0,0,7694,6,0,17"
void ReadWaypoint(std::string_view line, int line_number, WaypointFile& file) {
  const Fields fields = TakeFields(line);
  FileWaypoint waypoint;
  // A place without a position is none; one without an altitude or a time still is.
  if (!ReadPosition(fields, waypoint)) {
    file.notes.push_back(LineNote(line_number, "no position that can be read, skipped"));
    return;
  }
  const auto altitude_ft = ReadOptional(fields[kAltitude], kUnknownAltitude_ft);
  if (!altitude_ft) file.notes.push_back(LineNote(line_number, "altitude cannot be read"));
  // An unknown altitude stays 0, as in a record that was never given one.
  if (altitude_ft && *altitude_ft != kUnknownAltitude_ft) {
    waypoint.altitude_m = *altitude_ft * kMetresPerFoot;
  }
  const std::optional<double> day = ReadOptional(fields[kDay], 0);
  if (!day) file.notes.push_back(LineNote(line_number, "time cannot be read"));
  // Day 0 lies before the time scale and gives "not known".
  waypoint.time = TimeFromSpreadsheetDay(day.value_or(0));
  waypoint.name = TextFromField(fields[kName]);
  waypoint.description = TextFromField(fields[kDescription]);
  file.waypoints.push_back(std::move(waypoint));
}

}  // namespace

bool LooksLikeWaypoints(std::string_view text) {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  // Editors put the mark there when they save a file as UTF-8.
  if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
  return text.substr(std::min(text.find_first_not_of(" \t"), text.size())).starts_with(kFirstLine);
}

int ReadWaypoints(std::string_view text, WaypointFile& file, std::string& message) {
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
  // A header without any line is an empty list, which is no fault.
  if (file.waypoints.empty() && !file.notes.empty()) {
    message = LineError(kHeaderLines + 1, "none of the waypoints can be read");
    file = {};
    return -1;
  }
  return static_cast<int>(file.waypoints.size());
}

}  // namespace skyhaul::ozi
