#include "formats/openair/read_openair.h"

#include <algorithm>

#include "core/text/charset.h"
#include "core/text/utf8.h"
#include "formats/common/messages.h"
#include "formats/openair/faults.h"
#include "formats/openair/fields.h"
#include "formats/openair/limits.h"
#include "formats/openair/lines.h"
#include "formats/openair/reading.h"

namespace skyhaul::openair {

namespace {

// Two points, or one and itself again, enclose nothing: others are missing. A circle or an arc
// does.
bool HasArea(const std::vector<AirspaceSegment>& segments) {
  std::vector<AirspacePosition> corners;  // different ones, up to the third
  for (const AirspaceSegment& segment : segments) {
    if (segment.type != SegmentType::kPoint) return true;
    if (std::ranges::find(corners, segment.point) == corners.end())
      corners.push_back(segment.point);
    if (corners.size() == 3) return true;
  }
  return false;
}

void CheckArea(Reading& reading) {
  if (HasArea(Airspace(reading).segments) || !Airspace(reading).damage.empty()) return;
  AddFault(reading.faults,
           LineNote(reading.airspace_line, "fewer than three points in this airspace"),
           Cost::kOutline, &Airspace(reading));
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
    reading.airspace_line = 0;
  }
  if (reading.airspace_line != 0) CheckArea(reading);
  reading.airspace_line = 0;
}

// "AL GND DP 47:30:00 N 008:15:30 E": a point that is lost, because a line end was.
const char* MissOutline(Reading& reading, std::string_view argument) {
  if (!HasOutline(argument)) return nullptr;
  reading.cost = Cost::kOutline;
  return "holds a piece of an outline";
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
  return MissOutline(reading, argument);
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
  const char* lost = MissOutline(reading, argument);
  if (lost != nullptr) return lost;
  return repeated ? "replaces the name before it" : nullptr;
}

// "AH FL65", "AL 2500ft AGL"
const char* ReadLimit(Reading& reading, AirspaceLimit& limit, std::string_view argument) {
  const bool repeated = !limit.text.empty();
  // An airspace with a limit that is only text can still be drawn, so it is not left out.
  const bool understood = ParseLimit(argument, limit) == 0;
  const char* lost = MissOutline(reading, argument);
  if (lost != nullptr) return lost;
  if (!understood) return "altitude kept as text only";
  return repeated ? "replaces the altitude before it" : nullptr;
}

const char* ReadCeiling(Reading& reading, std::string_view argument) {
  return ReadLimit(reading, Airspace(reading).ceiling, argument);
}

const char* ReadFloor(Reading& reading, std::string_view argument) {
  return ReadLimit(reading, Airspace(reading).floor, argument);
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
  return MissOutline(reading, argument);
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
    if (line.swallowed) {
      reading.cost = Cost::kOutline;
      wrong = "holds a record behind the star";
    }
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
