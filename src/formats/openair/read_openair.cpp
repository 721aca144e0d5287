#include "formats/openair/read_openair.h"

#include "core/text/charset.h"
#include "core/text/letter_case.h"
#include "core/text/scan.h"
#include "core/text/utf8.h"
#include "formats/common/messages.h"
#include "formats/openair/faults.h"
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
  Faults faults;
  Cost cost = Cost::kNothing;  // of a fault in the line that is being read
};

// Reads the argument of one kind of line. Returns what is wrong with it, or null.
using ReadArgument = const char* (*)(Reading&, std::string_view argument);

constexpr const char* kNoCentre = "no centre (V X=) before it";
constexpr const char* kBadPosition = "position not understood";
constexpr const char* kBadRadius = "radius not understood";

CtrRecord& Airspace(Reading& reading) {
  return reading.file.airspaces.back();
}

// An arc or a circle without a centre: the broken V X= before it, if there is one, is to blame too.
const char* MissCentre(Reading& reading) {
  Blame(reading.faults, reading.faults.centre, Airspace(reading));
  return kNoCentre;
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
  // One whose every line was broken stays: a list should not look as if it had never been there.
  if (reading.airspace_line != 0 && Airspace(reading).segments.empty() &&
      Airspace(reading).damage.empty()) {
    AddFault(reading.faults,
             LineNote(reading.airspace_line,
                      "airspace without an outline left out: " + Airspace(reading).name),
             Cost::kNothing, nullptr);
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
  reading.faults.centre.reset();
  reading.faults.direction.reset();
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
  // Behind an outline: what follows is the next airspace's, and would become a part of this one.
  if (!Airspace(reading).segments.empty()) reading.cost = Cost::kOutline;
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
  const bool understood =
      (value.starts_with('+') || value.starts_with('-')) && IsMarkedComment(value.substr(1));
  reading.faults.direction.reset();
  reading.cost = Cost::kDirection;
  if (!understood) return "direction not understood";
  reading.direction = value.front() == '-' ? kCounterClockwise : kClockwise;
  return nullptr;
}

// "V X=47:30:00 N 008:15:30 E"
const char* ReadCentre(Reading& reading, std::string_view value) {
  // After a broken centre there is none, lest an arc turn about the one before.
  reading.has_centre = TakePosition(value, reading.centre) && IsComment(value);
  reading.faults.centre.reset();
  reading.cost = Cost::kCentre;
  return reading.has_centre ? nullptr : kBadPosition;
}

// "V Y=47:30:00 N 008:15:30 E": a position can only have been meant as a centre. "V W=5" is a
// width.
const char* MissVariable(Reading& reading, std::string_view argument) {
  if (HasPosition(argument)) {
    reading.has_centre = false;
    reading.cost = Cost::kCentre;
  }
  return "not understood";
}

const char* ReadVariable(Reading& reading, std::string_view argument) {
  const size_t equals = argument.find('=');
  const std::string_view name = TrimBlanks(argument.substr(0, equals));
  if (equals == std::string_view::npos || name.size() != 1) return MissVariable(reading, argument);
  const std::string_view value = TrimBlanks(argument.substr(equals + 1));
  const char variable = UpperLetter(name.front());
  if (variable == 'X') return ReadCentre(reading, value);
  if (variable == 'D') return ReadDirection(reading, value);
  return MissVariable(reading, argument);
}

// "DP 47:30:00 N 008:15:30 E", with or without "; the church" behind it.
const char* ReadPoint(Reading& reading, std::string_view argument) {
  AirspaceSegment point;
  if (!TakePosition(argument, point.point) || !IsComment(argument)) return kBadPosition;
  Airspace(reading).segments.push_back(point);
  return nullptr;
}

// An arc turns the wrong way when its direction was broken.
void AddArc(Reading& reading, const AirspaceSegment& arc) {
  Blame(reading.faults, reading.faults.direction, Airspace(reading));
  Airspace(reading).segments.push_back(arc);
}

// "DA 10,270,290": radius in nautical miles, bearings from and to. A bare word behind it may be a
// unit that changes what the numbers mean.
const char* ReadArcByBearings(Reading& reading, std::string_view argument) {
  AirspaceSegment arc = {
      .type = SegmentType::kArcByBearings, .point = reading.centre, .direction = reading.direction};
  if (!reading.has_centre) return MissCentre(reading);
  if (!TakeRadius(argument, arc.radius_m)) return kBadRadius;
  if (!TakeBearing(argument, arc.start_bearing_deg) ||
      !TakeBearing(argument, arc.end_bearing_deg) || !IsMarkedComment(argument)) {
    return "bearings not understood";
  }
  AddArc(reading, arc);
  return nullptr;
}

// "DB 47:30:00 N 008:15:30 E,47:20:00 N 008:10:00 E": from and to, about the centre of the last V
// X=.
const char* ReadArcByPoints(Reading& reading, std::string_view argument) {
  AirspaceSegment arc = {
      .type = SegmentType::kArcByPoints, .point = reading.centre, .direction = reading.direction};
  if (!reading.has_centre) return MissCentre(reading);
  if (!TakePosition(argument, arc.start)) return kBadPosition;
  SkipSeparator(argument);
  if (!TakePosition(argument, arc.end) || !IsComment(argument)) return kBadPosition;
  AddArc(reading, arc);
  return nullptr;
}

// "DC 5.5": nautical miles. "DC 5.5 km" is no comment.
const char* ReadCircle(Reading& reading, std::string_view argument) {
  AirspaceSegment circle = {.type = SegmentType::kCircle, .point = reading.centre};
  if (!reading.has_centre) return MissCentre(reading);
  if (!TakeRadius(argument, circle.radius_m) || !IsMarkedComment(argument)) return kBadRadius;
  Airspace(reading).segments.push_back(circle);
  return nullptr;
}

// "DY 47:30:00 N 008:15:30 E": a strip around a line, whose width is a variable of its own.
const char* ReadAirway(Reading&, std::string_view) {
  return "airways are not read";
}

struct LineKind {
  std::string_view code;
  ReadArgument read;
  bool inside_airspace = true;  // has a meaning only there
  Cost cost = Cost::kNothing;   // of a fault in it
};

constexpr LineKind kLineKinds[] = {
    {.code = "AC", .read = ReadClass, .inside_airspace = false},
    {.code = "TO", .read = ReadTerrain, .inside_airspace = false},
    {.code = "TC", .read = ReadTerrain, .inside_airspace = false},
    {.code = "AN", .read = ReadName},
    {.code = "AH", .read = ReadCeiling},
    {.code = "AL", .read = ReadFloor},
    {.code = "V", .read = ReadVariable},
    {.code = "DP", .read = ReadPoint, .cost = Cost::kOutline},
    {.code = "DA", .read = ReadArcByBearings, .cost = Cost::kOutline},
    {.code = "DB", .read = ReadArcByPoints, .cost = Cost::kOutline},
    {.code = "DC", .read = ReadCircle, .cost = Cost::kOutline},
    {.code = "DY", .read = ReadAirway, .cost = Cost::kOutline},
};

// "AY TMA" and the other records that are kept as they are.
const char* ReadDetail(Reading& reading, const DetailCode& detail, std::string_view argument) {
  if (reading.airspace_line == 0) return "outside an airspace";
  std::string& field = Airspace(reading).*detail.field;
  const std::string text = PlainText(argument);
  // "AF" alone says nothing, and some files give two frequencies, a line each.
  if (!field.empty() && !text.empty()) field += '\n';
  field += text;
  return nullptr;
}

// A line that is not understood costs itself only, as colours and pens do, which say nothing about
// the outline; unless it looks as if it did.
const char* ReadLine(Reading& reading, const Line& line) {
  reading.cost = Cost::kNothing;
  for (const LineKind& kind : kLineKinds) {
    if (kind.code != line.code) continue;
    if (kind.inside_airspace && reading.airspace_line == 0) return "outside an airspace";
    reading.cost = kind.cost;
    return kind.read(reading, line.argument);
  }
  for (const DetailCode& detail : kDetailCodes) {
    if (detail.code == line.code) return ReadDetail(reading, detail, line.argument);
  }
  if (MayBeOutline(line)) reading.cost = Cost::kOutline;
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
    const std::string what =
        std::string(wrong) + ": " + PlainText(FirstCharacters(line.content, kQuoted));
    AddFault(reading.faults, LineNote(reading.line, what), reading.cost,
             reading.airspace_line == 0 ? nullptr : &Airspace(reading));
  }
  // The last airspace has no AC behind it that would close it.
  LeaveAirspace(reading);
  TakeNotes(reading.faults, file);
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
