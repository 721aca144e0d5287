#include "formats/cup/read_cup.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <vector>

#include "core/text/angles.h"
#include "core/text/charset.h"
#include "core/text/letter_case.h"
#include "core/text/numbers.h"
#include "core/text/printable.h"
#include "core/text/scan.h"
#include "core/units.h"
#include "formats/common/messages.h"
#include "formats/common/position.h"
#include "formats/cup/quoted_fields.h"

namespace skyhaul::cup {

namespace {

constexpr double kHighest_m = 100000;  // a slip of the pen beyond that, not a place
// "-----Related Tasks-----"; only the dashes are compared.
constexpr std::string_view kTasks = "-----";
constexpr std::string_view kAirfieldStyles[] = {"2", "4", "5"};

enum Column { kName, kCode, kLat, kLon, kElev, kStyle, kDesc, kColumnCount };

struct ColumnNames {
  std::string_view name;
  std::string_view old_name;  // in files of the format's first years
};

constexpr ColumnNames kColumnNames[kColumnCount] = {
    {"name", "title"},     {"code", "code"},   {"lat", "latitude"},     {"lon", "longitude"},
    {"elev", "elevation"}, {"style", "style"}, {"desc", "description"},
};

// Where each column stands; nothing for one that the file does not have.
using Columns = std::array<std::optional<size_t>, kColumnCount>;

// name,code,country,lat,lon,elev,style,rwdir,rwlen,freq,desc
constexpr Columns kColumnsWithoutHeading = {0, 1, 3, 4, 5, 6, 10};

Columns ColumnsOf(const std::vector<std::string>& heading) {
  Columns columns;
  for (size_t at = 0; at < heading.size(); ++at) {
    for (size_t column = 0; column < kColumnCount; ++column) {
      const ColumnNames& names = kColumnNames[column];
      // Of two columns with the same name the first counts.
      if (columns[column]) continue;
      if (EqualIgnoringCase(heading[at], names.name) ||
          EqualIgnoringCase(heading[at], names.old_name)) {
        columns[column] = at;
      }
    }
  }
  return columns;
}

// Any other column may be missing: a waypoint needs a name and a place.
bool IsHeading(const Columns& columns) {
  return columns[kName] && columns[kLat] && columns[kLon];
}

std::string_view Field(const std::vector<std::string>& fields, const Columns& columns,
                       Column column) {
  return columns[column] && *columns[column] < fields.size() ? fields[*columns[column]]
                                                             : std::string_view();
}

// "4623.456N" or "00712.345E" in degrees; the ranges are left to the position.
std::optional<double> ReadAngle(std::string_view text, char positive, char negative) {
  if (text.empty()) return std::nullopt;
  const char hemisphere = UpperLetter(text.back());
  if (hemisphere != positive && hemisphere != negative) return std::nullopt;
  const auto angle = ReadDegreesMinutes(TrimBlanks(text.substr(0, text.size() - 1)));
  // Minutes of 60 and more are taken for a slip, for example decimal degrees in place of minutes.
  if (!angle || angle->minutes >= 60) return std::nullopt;
  return (hemisphere == negative ? -1 : 1) * (angle->degrees + angle->minutes / 60);
}

std::optional<FilePosition> ReadPosition(std::string_view lat, std::string_view lon) {
  const std::optional<double> lat_deg = ReadAngle(lat, 'N', 'S');
  const std::optional<double> lon_deg = ReadAngle(lon, 'E', 'W');
  if (!lat_deg || !lon_deg) return std::nullopt;
  return PositionFromDegrees(*lat_deg, *lon_deg);
}

// "504.0m", "1654ft", or a number of metres.
std::optional<double> ReadElevation(std::string_view text) {
  // Lists of places without their heights leave it empty.
  if (text.empty()) return 0.0;
  const size_t unit_at = std::min(text.find_first_not_of("+-.0123456789"), text.size());
  const std::string_view unit = TrimBlanks(text.substr(unit_at));
  std::optional<double> number = ReadDecimal(text.substr(0, unit_at));
  if (!number) return std::nullopt;
  if (EqualIgnoringCase(unit, "ft")) *number *= kMetresPerFoot;
  // Any other unit would be a guess, and an elevation in the wrong unit looks like a right one.
  if (!unit.empty() && !EqualIgnoringCase(unit, "m") && !EqualIgnoringCase(unit, "ft")) {
    return std::nullopt;
  }
  if (std::fabs(*number) > kHighest_m) return std::nullopt;
  return number;
}

// What is wrong with a waypoint that is used nevertheless.
constexpr std::string_view kNoElevation = "the elevation cannot be read and is taken for 0";

// "Lesce-Bled","LJBL",SI,4621.666N,01410.332E,504.0m,5,130,1130m,123.500,"Home field"
// Returns an empty text, or what is wrong with the record.
std::string_view ReadWaypoint(const QuotedRecord& record, const Columns& columns,
                              FileWaypoint& waypoint) {
  const auto field = [&](Column column) { return Field(record.fields, columns, column); };
  if (!record.closed) return "a quote is not closed";
  const std::optional<FilePosition> position = ReadPosition(field(kLat), field(kLon));
  if (!position) return "the position cannot be read";
  const std::optional<double> altitude_m = ReadElevation(field(kElev));
  waypoint = {.lat = position->lat, .lon = position->lon, .altitude_m = altitude_m.value_or(0)};
  // A quoted field may hold line ends, which instruments and other formats cannot.
  const std::string code = OneLine(field(kCode));
  const std::string name = OneLine(field(kName));
  waypoint.name = code.empty() ? name : code;
  // A file without long names repeats the code as the name; that is no description.
  if (name != waypoint.name) waypoint.description = name;
  waypoint.comment = OneLine(field(kDesc));
  const bool airfield =
      std::ranges::find(kAirfieldStyles, field(kStyle)) != std::end(kAirfieldStyles);
  waypoint.type = airfield ? kWaypointAirfield : 0;
  // The place is worth keeping without its elevation.
  return altitude_m ? "" : kNoElevation;
}

// The lines from a place on, counted from 1.
struct Lines {
  std::string_view rest;
  int number = 1;
};

// Blank lines are not records of one empty field, and their numbers count for the notes.
void SkipBlankLines(Lines& lines) {
  while (!lines.rest.empty()) {
    std::string_view rest = lines.rest;
    if (!TrimBlanks(TakeLine(rest)).empty()) return;
    lines = {.rest = rest, .number = lines.number + 1};
  }
}

// Finds out what the columns are and takes the heading if there is one. Returns 0, or -1 for a text
// of another kind.
int TakeHeading(Lines& lines, Columns& columns) {
  SkipBlankLines(lines);
  if (lines.rest.empty()) return -1;
  Lines after = lines;
  QuotedRecord record;
  after.number += TakeQuotedRecord(after.rest, record);
  columns = ColumnsOf(record.fields);
  // name,code,country,lat,lon,elev,style,rwdir,rwlen,freq,desc
  if (IsHeading(columns)) {
    lines = after;
    return 0;
  }
  // Without a heading only a first line with a position in the right columns tells the format from
  // any other list with commas.
  columns = kColumnsWithoutHeading;
  return ReadPosition(Field(record.fields, columns, kLat), Field(record.fields, columns, kLon))
             ? 0
             : -1;
}

}  // namespace

bool LooksLike(std::string_view text) {
  const std::string utf8 = ToUtf8(text);
  Lines lines = {.rest = utf8};
  Columns columns;
  return TakeHeading(lines, columns) == 0;
}

int Read(std::string_view text, WaypointFile& file, std::string& message) {
  file = {};
  message.clear();
  const std::string utf8 = ToUtf8(text);
  Lines lines = {.rest = utf8};
  Columns columns;
  if (TakeHeading(lines, columns) != 0) {
    message = LineError(lines.number, "not the heading of a SeeYou CUP file");
    return -1;
  }
  std::string first_fault;
  // Tasks have other columns, so that the list ends at their first line.
  for (SkipBlankLines(lines); !lines.rest.empty() && !lines.rest.starts_with(kTasks);
       SkipBlankLines(lines)) {
    // The line where the record begins, as a quoted field may go on over several.
    const int number = lines.number;
    QuotedRecord record;
    lines.number += TakeQuotedRecord(lines.rest, record);
    FileWaypoint waypoint;
    const std::string_view fault = ReadWaypoint(record, columns, waypoint);
    if (fault.empty() || fault == kNoElevation) file.waypoints.push_back(std::move(waypoint));
    if (fault == kNoElevation) {
      file.notes.push_back(LineNote(number, fault));
    } else if (!fault.empty()) {
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

}  // namespace skyhaul::cup
