#include "formats/openair/write_openair.h"

#include <optional>
#include <string_view>

#include "core/text/scan.h"

#include "formats/openair/fields.h"
#include "formats/openair/limits.h"
#include "formats/openair/lines.h"

namespace skyhaul::openair {

namespace {

constexpr std::string_view kLineEnd = "\r\n";

// The variables as a reader has them at this place in the file.
struct Variables {
  std::optional<AirspacePosition> centre;
  char direction = kClockwise;
};

void AppendLine(std::string& text, std::string_view code, std::string_view argument) {
  // A code without anything behind it would be read as an empty name or a limit that is not
  // understood.
  if (argument.empty()) return;
  text.append(code).append(" ").append(argument).append(kLineEnd);
}

// "AY TMA", and "AF 122.800" twice where the file had two.
void AppendDetails(std::string& text, const CtrRecord& airspace) {
  for (const DetailCode& detail : kDetailCodes) {
    std::string_view rest = airspace.*detail.field;
    while (!rest.empty()) AppendLine(text, detail.code, PlainText(TakeField(rest, '\n')));
  }
}

// "V X=47:30:00 N 008:15:30 E", once for all segments about the same centre.
void SetCentre(std::string& text, Variables& variables, AirspacePosition centre) {
  if (variables.centre == centre) return;
  variables.centre = centre;
  text += "V X=";
  AppendPosition(text, centre);
  text += kLineEnd;
}

// "V D=-". Readers begin each airspace clockwise, so most files need no such line.
void SetDirection(std::string& text, Variables& variables, char direction) {
  const char written = direction == kCounterClockwise ? kCounterClockwise : kClockwise;
  if (variables.direction == written) return;
  variables.direction = written;
  text.append("V D=").append(1, written).append(kLineEnd);
}

void AppendArcByPoints(std::string& text, const AirspaceSegment& arc) {
  // "DB 47:30:00 N 008:15:30 E,47:20:00 N 008:10:00 E"
  text += "DB ";
  AppendPosition(text, arc.start);
  text += ",";
  AppendPosition(text, arc.end);
}

void AppendArcByBearings(std::string& text, const AirspaceSegment& arc) {
  // "DA 10,270,290"
  text += "DA ";
  AppendScaled(text, arc.radius_m, kMetresPerNauticalMile);
  text += ",";
  AppendScaled(text, arc.start_bearing_deg, 1);
  text += ",";
  AppendScaled(text, arc.end_bearing_deg, 1);
}

void AppendSegment(std::string& text, Variables& variables, const AirspaceSegment& segment) {
  const bool is_arc =
      segment.type == SegmentType::kArcByPoints || segment.type == SegmentType::kArcByBearings;
  // Variables stand before the segment that they are for. Circles have no direction.
  if (is_arc) SetDirection(text, variables, segment.direction);
  if (segment.type != SegmentType::kPoint) SetCentre(text, variables, segment.point);
  switch (segment.type) {
    case SegmentType::kPoint:
      // "DP 47:30:00 N 008:15:30 E"
      text += "DP ";
      AppendPosition(text, segment.point);
      break;
    case SegmentType::kArcByPoints:
      AppendArcByPoints(text, segment);
      break;
    case SegmentType::kArcByBearings:
      AppendArcByBearings(text, segment);
      break;
    case SegmentType::kCircle:
      // "DC 5.5"
      text += "DC ";
      AppendScaled(text, segment.radius_m, kMetresPerNauticalMile);
      break;
  }
  text += kLineEnd;
}

}  // namespace

std::string Write(std::span<const CtrRecord> airspaces) {
  std::string text;
  for (const CtrRecord& airspace : airspaces) {
    // A blank line between airspaces is for people.
    if (!text.empty()) text += kLineEnd;
    const std::string airspace_class = PlainText(airspace.airspace_class);
    // AC comes first because it is the line that begins an airspace.
    AppendLine(text, "AC", airspace_class.empty() ? "UNCLASSIFIED" : airspace_class);
    AppendLine(text, "AN", PlainText(airspace.name));
    AppendLine(text, "AH", LimitText(airspace.ceiling));
    AppendLine(text, "AL", LimitText(airspace.floor));
    AppendDetails(text, airspace);
    // Anew for each airspace, because readers forget the centre and the direction at an AC.
    Variables variables;
    for (const AirspaceSegment& segment : airspace.segments) {
      AppendSegment(text, variables, segment);
    }
  }
  return text;
}

}  // namespace skyhaul::openair
