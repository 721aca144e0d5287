#include "protocols/flytec/ctr_lines.h"

#include <cmath>
#include <utility>

#include "analysis/airspace_outline.h"
#include "core/airspace_text.h"
#include "core/count_message.h"
#include "core/text/digits.h"
#include "core/text/printable.h"
#include "core/units.h"
#include "protocols/flytec/field_text.h"
#include "protocols/sentence/checksum.h"
#include "protocols/sentence/positions.h"

namespace skyhaul::flytec {

namespace {

constexpr uint32_t kAfterLine_ms = 100;
constexpr uint32_t kAfterArcLine_ms = 200;
// Five digits of whole metres: from what rounds to 1 to what is still 99999.
constexpr double kSmallestRadius_m = 0.5;
constexpr double kLargestRadius_m = 99999.0;
constexpr uint32_t kLargestWarning_m = 9999;

// The sentences being made, and what numbers them.
struct Lines {
  std::vector<CtrLine> made;
  size_t total = 0;
};

// An arc by bearings whose ends are the same is a whole turn.
bool IsCircle(const AirspaceSegment& segment) {
  if (segment.type == SegmentType::kCircle) return true;
  const double turn_deg = std::fabs(segment.end_bearing_deg - segment.start_bearing_deg);
  return segment.type == SegmentType::kArcByBearings && std::fmod(turn_deg, 360) == 0;
}

bool IsArc(const AirspaceSegment& segment) {
  return segment.type != SegmentType::kPoint && !IsCircle(segment);
}

// The sentences of an outline.
size_t ElementCount(const CtrRecord& record) {
  size_t count = 0;
  for (const AirspaceSegment& segment : record.segments) count += IsArc(segment) ? 3 : 1;
  return count;
}

void AddLine(Lines& lines, const std::string& fields, uint32_t pause_ms) {
  std::string sentence = "$PBRCTRW," + PaddedNumber(lines.total, 3) + ',' +
                         PaddedNumber(lines.made.size(), 3) + ',' + fields;
  AppendNmeaChecksum(sentence);
  lines.made.push_back({.sentence = std::move(sentence), .pause_ms = pause_ms});
}

std::string Position(const AirspacePosition& position) {
  return FormatLatitude(SemicirclesToRadians(position.lat), kMilliminutesPerRadian) + "," +
         FormatLongitude(SemicirclesToRadians(position.lon), kMilliminutesPerRadian);
}

// The instrument knows an arc by its ends. An outline may have bearings and a radius instead, so
// the ends are computed on the ellipsoid.
AirspaceSegment SegmentAsSent(const AirspaceSegment& segment) {
  if (segment.type == SegmentType::kPoint) return {.point = segment.point};
  if (IsCircle(segment)) {
    return {.type = SegmentType::kCircle,
            .point = segment.point,
            .radius_m = static_cast<double>(RoundHalfAwayFromZero(segment.radius_m))};
  }
  const bool by_bearings = segment.type == SegmentType::kArcByBearings;
  const auto [start, end] = by_bearings ? EndsOfArc(segment) : ArcEnds{segment.start, segment.end};
  return {.type = SegmentType::kArcByPoints,
          .point = segment.point,
          .start = start,
          .end = end,
          .direction = segment.direction == kCounterClockwise ? kCounterClockwise : kClockwise};
}

void AddArc(Lines& lines, const AirspaceSegment& segment) {
  const std::string direction = {',', segment.direction};
  // $PBRCTRW,007,004,X,4700.000,N,01100.000,W       centre
  // $PBRCTRW,007,005,T,4706.000,N,01100.000,W,-     start and direction
  // $PBRCTRW,007,006,Z,4700.000,N,01106.000,W,-     end
  AddLine(lines, "X," + Position(segment.point), kAfterArcLine_ms);
  AddLine(lines, "T," + Position(segment.start) + direction, kAfterArcLine_ms);
  AddLine(lines, "Z," + Position(segment.end) + direction, kAfterArcLine_ms);
}

void AddCircle(Lines& lines, const AirspaceSegment& segment) {
  // $PBRCTRW,007,003,C,4730.000,S,01100.000,E,01235
  const auto radius_m = static_cast<uint32_t>(segment.radius_m);
  AddLine(lines, "C," + Position(segment.point) + "," + PaddedNumber(radius_m, 5), kAfterLine_ms);
}

void AddSegment(Lines& lines, const AirspaceSegment& segment) {
  if (segment.type == SegmentType::kCircle) {
    AddCircle(lines, segment);
  } else if (segment.type == SegmentType::kArcByPoints) {
    AddArc(lines, segment);
  } else {
    AddLine(lines, "P," + Position(segment.point), kAfterLine_ms);
  }
  lines.made.back().ends_segment = true;
}

std::string SegmentObstacle(const AirspaceSegment& segment) {
  // Written so that a radius that is not a number is refused too.
  if (IsCircle(segment) &&
      !(segment.radius_m >= kSmallestRadius_m && segment.radius_m <= kLargestRadius_m)) {
    return "has a radius that is not from 1 to 99999 m";
  }
  if (!std::isfinite(segment.start_bearing_deg) || !std::isfinite(segment.end_bearing_deg)) {
    return "has an arc without bearings";
  }
  return "";
}

}  // namespace

std::string CtrObstacle(const CtrRecord& record) {
  std::string obstacle;
  if (record.segments.empty()) obstacle = "has no outline";
  if (const size_t count = ElementCount(record); count > kCtrElements) {
    obstacle = FormatCountMessage("has % points, but the instrument takes %",
                                  static_cast<uint32_t>(count), kCtrElements);
  }
  if (record.warning_m > kLargestWarning_m) {
    obstacle = "has a warning distance of more than four digits";
  }
  for (const AirspaceSegment& segment : record.segments) {
    if (obstacle.empty()) obstacle = SegmentObstacle(segment);
  }
  return obstacle.empty() ? "" : "CTR " + record.name + " " + obstacle;
}

CtrRecord CtrAsSent(const CtrRecord& record, const std::string& name) {
  // The pilot sees the remark, so what matters most stands there.
  const std::string remark =
      OneLine(record.remark).empty() ? ClassAndLimits(record, kNameWidth) : record.remark;
  CtrRecord sent = {.name = TextOfField(name, kNameWidth),
                    .remark = TextOfField(FieldText(remark), kNameWidth),
                    .warning_m = record.warning_m.value_or(kDefaultWarning_m)};
  for (const AirspaceSegment& segment : record.segments) {
    sent.segments.push_back(SegmentAsSent(segment));
  }
  return sent;
}

std::vector<CtrLine> CtrLines(const CtrRecord& record, const std::string& name) {
  const CtrRecord sent = CtrAsSent(record, name);
  Lines lines;
  lines.total = 2 + ElementCount(sent);  // name and remark come first
  // $PBRCTRW,007,000,A                ,3440
  AddLine(lines, name + "," + PaddedNumber(*sent.warning_m, 4), kAfterLine_ms);
  AddLine(lines, FieldText(sent.remark), kAfterLine_ms);
  for (const AirspaceSegment& segment : sent.segments) AddSegment(lines, segment);
  return std::move(lines.made);
}

}  // namespace skyhaul::flytec
