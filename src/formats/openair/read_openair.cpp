#include "formats/openair/read_openair.h"

#include "core/text/charset.h"
#include "core/text/letter_case.h"
#include "core/text/scan.h"
#include "core/text/utf8.h"
#include "formats/common/messages.h"
#include "formats/openair/fields.h"
#include "formats/openair/limits.h"
#include "formats/openair/lines.h"

namespace skyhaul::openair {

namespace {

// Where the reader stands.
struct Reading {
  AirspaceFile& file;
  int line = 0;
  int first_airspace_line = 0;  // 0: none yet
  int airspace_line = 0;        // 0: not inside an airspace
  bool has_centre = false;
  AirspacePosition centre;
  char direction = kClockwise;
};

// Reads the argument of one kind of line. Returns what is wrong with it, or null.
using ReadArgument = const char* (*)(Reading&, std::string_view argument);

constexpr const char* kNoCentre = "no centre (V X=) before it";
constexpr const char* kBadPosition = "position not understood";
constexpr const char* kBadRadius = "radius not understood";

CtrRecord& Airspace(Reading& reading) {
  return reading.file.airspaces.back();
}

void Note(Reading& reading, int line, std::string_view what) {
  reading.file.notes.push_back(LineNote(line, what));
}

bool AtEnd(std::string_view rest) {
  SkipBlanks(rest);
  return rest.empty();
}

// "10.5" of "DA 10.5,270,290" or "DC 10.5", nautical miles.
bool TakeRadius(std::string_view& rest, double& radius_m) {
  constexpr double kWidestNauticalMiles = 5400;  // from a pole to the equator
  double radius_nm = 0;
  if (!TakeNumber(rest, radius_nm) || radius_nm <= 0 || radius_nm > kWidestNauticalMiles)
    return false;
  radius_m = radius_nm * kMetresPerNauticalMile;
  return true;
}

bool TakeBearing(std::string_view& rest, double& bearing_deg) {
  SkipSeparator(rest);
  // North is written as 0 or as 360.
  return TakeNumber(rest, bearing_deg) && bearing_deg <= 360;
}

// Whether an airspace has an outline is known only when the next one begins or the file ends.
void LeaveAirspace(Reading& reading) {
  if (reading.airspace_line != 0 && Airspace(reading).segments.empty()) {
    Note(reading, reading.airspace_line,
         "airspace without an outline left out: " + Airspace(reading).name);
    reading.file.airspaces.pop_back();
  }
  reading.airspace_line = 0;
}

// "AC D"
const char* ReadClass(Reading& reading, std::string_view argument) {
  LeaveAirspace(reading);
  reading.airspace_line = reading.line;
  if (reading.first_airspace_line == 0) reading.first_airspace_line = reading.line;
  // A centre of the airspace before would give a circle in the wrong place; without one the line
  // that misses its V X= is noted.
  reading.has_centre = false;
  reading.direction = kClockwise;
  reading.file.airspaces.push_back({.airspace_class = PlainText(argument)});
  return nullptr;
}

// "TO lake" or "TC wood". The points that follow fall outside any airspace and are skipped there.
const char* ReadTerrain(Reading& reading, std::string_view) {
  LeaveAirspace(reading);
  return "terrain is not used";
}

// "AN ZURICH TMA 1". A second name is a sign that an AC line is missing, hence the note.
const char* ReadName(Reading& reading, std::string_view argument) {
  std::string& name = Airspace(reading).name;
  const bool repeated = !name.empty();
  name = PlainText(argument);
  return repeated ? "replaces the name before it" : nullptr;
}

// "AH FL65", "AL 2500ft AGL"
const char* ReadLimit(AirspaceLimit& limit, std::string_view argument) {
  const bool repeated = !limit.text.empty();
  // An airspace with a limit that is only text can still be drawn, so it is not left out.
  if (ParseLimit(argument, limit) != 0) return "altitude kept as text only";
  return repeated ? "replaces the altitude before it" : nullptr;
}

const char* ReadCeiling(Reading& reading, std::string_view argument) {
  return ReadLimit(Airspace(reading).ceiling, argument);
}

const char* ReadFloor(Reading& reading, std::string_view argument) {
  return ReadLimit(Airspace(reading).floor, argument);
}

// "V D=-" for counter-clockwise
const char* ReadDirection(Reading& reading, std::string_view value) {
  if (value != "+" && value != "-") return "direction not understood";
  reading.direction = value == "-" ? kCounterClockwise : kClockwise;
  return nullptr;
}

// "V X=47:30:00 N 008:15:30 E"
const char* ReadCentre(Reading& reading, std::string_view value) {
  // After a broken centre there is none, lest an arc turn about the one before.
  reading.has_centre = TakePosition(value, reading.centre) && AtEnd(value);
  return reading.has_centre ? nullptr : kBadPosition;
}

const char* ReadVariable(Reading& reading, std::string_view argument) {
  const size_t equals = argument.find('=');
  const std::string_view name = TrimBlanks(argument.substr(0, equals));
  if (equals == std::string_view::npos || name.size() != 1) return "not understood";
  const std::string_view value = TrimBlanks(argument.substr(equals + 1));
  const char variable = UpperLetter(name.front());
  if (variable == 'X') return ReadCentre(reading, value);
  if (variable == 'D') return ReadDirection(reading, value);
  return "not understood";
}

// "DP 47:30:00 N 008:15:30 E"
const char* ReadPoint(Reading& reading, std::string_view argument) {
  AirspaceSegment point;
  // More behind a position means that it was misread, for example cut at a decimal comma.
  if (!TakePosition(argument, point.point) || !AtEnd(argument)) return kBadPosition;
  Airspace(reading).segments.push_back(point);
  return nullptr;
}

// "DA 10,270,290": radius in nautical miles, bearings from and to.
const char* ReadArcByBearings(Reading& reading, std::string_view argument) {
  AirspaceSegment arc = {
      .type = SegmentType::kArcByBearings, .point = reading.centre, .direction = reading.direction};
  if (!reading.has_centre) return kNoCentre;
  if (!TakeRadius(argument, arc.radius_m)) return kBadRadius;
  if (!TakeBearing(argument, arc.start_bearing_deg) ||
      !TakeBearing(argument, arc.end_bearing_deg) || !AtEnd(argument)) {
    return "bearings not understood";
  }
  Airspace(reading).segments.push_back(arc);
  return nullptr;
}

// "DB 47:30:00 N 008:15:30 E,47:20:00 N 008:10:00 E": from and to, about the centre of the last V
// X=.
const char* ReadArcByPoints(Reading& reading, std::string_view argument) {
  AirspaceSegment arc = {
      .type = SegmentType::kArcByPoints, .point = reading.centre, .direction = reading.direction};
  if (!reading.has_centre) return kNoCentre;
  if (!TakePosition(argument, arc.start)) return kBadPosition;
  SkipSeparator(argument);
  if (!TakePosition(argument, arc.end) || !AtEnd(argument)) return kBadPosition;
  Airspace(reading).segments.push_back(arc);
  return nullptr;
}

// "DC 5.5": nautical miles.
const char* ReadCircle(Reading& reading, std::string_view argument) {
  AirspaceSegment circle = {.type = SegmentType::kCircle, .point = reading.centre};
  if (!reading.has_centre) return kNoCentre;
  if (!TakeRadius(argument, circle.radius_m) || !AtEnd(argument)) return kBadRadius;
  Airspace(reading).segments.push_back(circle);
  return nullptr;
}

struct LineKind {
  std::string_view code;
  ReadArgument read;
  bool inside_airspace = true;  // has a meaning only there
};

constexpr LineKind kLineKinds[] = {
    {.code = "AC", .read = ReadClass, .inside_airspace = false},
    {.code = "TO", .read = ReadTerrain, .inside_airspace = false},
    {.code = "TC", .read = ReadTerrain, .inside_airspace = false},
    {.code = "AN", .read = ReadName},
    {.code = "AH", .read = ReadCeiling},
    {.code = "AL", .read = ReadFloor},
    {.code = "V", .read = ReadVariable},
    {.code = "DP", .read = ReadPoint},
    {.code = "DA", .read = ReadArcByBearings},
    {.code = "DB", .read = ReadArcByPoints},
    {.code = "DC", .read = ReadCircle},
};

// A line that is not understood costs itself only: files hold colours, pens and newer records,
// which say nothing about the outline.
const char* ReadLine(Reading& reading, const Line& line) {
  for (const LineKind& kind : kLineKinds) {
    if (kind.code != line.code) continue;
    if (kind.inside_airspace && reading.airspace_line == 0) return "outside an airspace";
    return kind.read(reading, line.argument);
  }
  return "not understood";
}

int RefuseFile(int line, const char* what, AirspaceFile& file, std::string& message) {
  file = {};
  message = LineError(line, what);
  return -1;
}

}  // namespace

int Read(std::string_view text, AirspaceFile& file, std::string& message) {
  constexpr size_t kQuoted = 60;  // characters of a line in a note
  file = {};
  message.clear();
  const std::string utf8 = ToUtf8(text);
  Reading reading = {.file = file};
  std::string_view rest = utf8;
  Line line;
  while (TakeLine(rest, line)) {
    ++reading.line;
    // Blank lines and lines that are a comment.
    if (line.content.empty()) continue;
    const char* wrong = ReadLine(reading, line);
    if (wrong == nullptr) continue;
    Note(reading, reading.line,
         std::string(wrong) + ": " + PlainText(FirstCharacters(line.content, kQuoted)));
  }
  // The last airspace has no AC behind it that would close it.
  LeaveAirspace(reading);
  if (reading.first_airspace_line == 0) {
    return RefuseFile(1, "no airspace (AC) in this file", file, message);
  }
  // The line of the first AC is where a person should begin to look.
  if (file.airspaces.empty()) {
    return RefuseFile(reading.first_airspace_line, "no airspace with an outline", file, message);
  }
  return static_cast<int>(file.airspaces.size());
}

}  // namespace skyhaul::openair
