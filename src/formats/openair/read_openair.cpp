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
  return TakeNumber(rest, bearing_deg) && bearing_deg <= 360;
}

void LeaveAirspace(Reading& reading) {
  if (reading.airspace_line != 0 && Airspace(reading).segments.empty()) {
    Note(reading, reading.airspace_line,
         "airspace without an outline left out: " + Airspace(reading).name);
    reading.file.airspaces.pop_back();
  }
  reading.airspace_line = 0;
}

const char* ReadClass(Reading& reading, std::string_view argument) {
  LeaveAirspace(reading);
  reading.airspace_line = reading.line;
  if (reading.first_airspace_line == 0) reading.first_airspace_line = reading.line;
  reading.has_centre = false;
  reading.direction = kClockwise;
  reading.file.airspaces.push_back({.airspace_class = PlainText(argument)});
  return nullptr;
}

const char* ReadTerrain(Reading& reading, std::string_view) {
  LeaveAirspace(reading);
  return "terrain is not used";
}

const char* ReadName(Reading& reading, std::string_view argument) {
  std::string& name = Airspace(reading).name;
  const bool repeated = !name.empty();
  name = PlainText(argument);
  return repeated ? "replaces the name before it" : nullptr;
}

const char* ReadLimit(AirspaceLimit& limit, std::string_view argument) {
  const bool repeated = !limit.text.empty();
  if (ParseLimit(argument, limit) != 0) return "altitude kept as text only";
  return repeated ? "replaces the altitude before it" : nullptr;
}

const char* ReadCeiling(Reading& reading, std::string_view argument) {
  return ReadLimit(Airspace(reading).ceiling, argument);
}

const char* ReadFloor(Reading& reading, std::string_view argument) {
  return ReadLimit(Airspace(reading).floor, argument);
}

const char* ReadDirection(Reading& reading, std::string_view value) {
  if (value != "+" && value != "-") return "direction not understood";
  reading.direction = value == "-" ? kCounterClockwise : kClockwise;
  return nullptr;
}

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

const char* ReadPoint(Reading& reading, std::string_view argument) {
  AirspaceSegment point;
  if (!TakePosition(argument, point.point) || !AtEnd(argument)) return kBadPosition;
  Airspace(reading).segments.push_back(point);
  return nullptr;
}

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
    if (line.content.empty()) continue;
    const char* wrong = ReadLine(reading, line);
    if (wrong == nullptr) continue;
    Note(reading, reading.line,
         std::string(wrong) + ": " + PlainText(FirstCharacters(line.content, kQuoted)));
  }
  LeaveAirspace(reading);
  if (reading.first_airspace_line == 0) {
    return RefuseFile(1, "no airspace (AC) in this file", file, message);
  }
  if (file.airspaces.empty()) {
    return RefuseFile(reading.first_airspace_line, "no airspace with an outline", file, message);
  }
  return static_cast<int>(file.airspaces.size());
}

}  // namespace skyhaul::openair
