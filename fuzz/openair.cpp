// Any bytes as an OpenAir file: what is read lies in its range, and written it is read again.

#include "core/airspace.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "formats/openair/read_openair.h"
#include "formats/openair/write_openair.h"

namespace {

using skyhaul::AirspaceLimit;
using skyhaul::AirspaceSegment;
using skyhaul::CtrRecord;

void Require(bool holds) {
  if (!holds) __builtin_trap();
}

void RequireGoodSegment(const AirspaceSegment& segment) {
  constexpr int64_t kPole = 1 << 30;
  for (const auto& position : {segment.point, segment.start, segment.end}) {
    Require(std::abs(int64_t{position.lat}) <= kPole);
  }
  Require(segment.radius_m >= 0 && segment.radius_m <= 5400 * 1852.0);
  Require(segment.start_bearing_deg >= 0 && segment.start_bearing_deg <= 360);
  Require(segment.end_bearing_deg >= 0 && segment.end_bearing_deg <= 360);
  Require(segment.direction == skyhaul::kClockwise ||
          segment.direction == skyhaul::kCounterClockwise);
}

bool SameLimit(const AirspaceLimit& left, const AirspaceLimit& right) {
  return left.reference == right.reference && left.unit == right.unit &&
         left.value == right.value && left.text == right.text;
}

bool Near(double left, double right) {
  return std::abs(left - right) < 3e-6;
}

bool SameSegment(const AirspaceSegment& left, const AirspaceSegment& right) {
  return left.type == right.type && left.point == right.point && left.start == right.start &&
         left.end == right.end && Near(left.radius_m, right.radius_m) &&
         Near(left.start_bearing_deg, right.start_bearing_deg) &&
         Near(left.end_bearing_deg, right.end_bearing_deg) && left.direction == right.direction;
}

// A radius of less than a millionth of a metre is written as nothing, which no reader takes.
bool CanBeWritten(const AirspaceSegment& segment) {
  const bool has_radius = segment.type == skyhaul::SegmentType::kCircle ||
                          segment.type == skyhaul::SegmentType::kArcByBearings;
  return !has_radius || segment.radius_m > 1e-6;
}

void RequireSame(const CtrRecord& left, const CtrRecord& right) {
  Require(left.name == right.name);
  Require(left.airspace_class == right.airspace_class || left.airspace_class.empty());
  Require(SameLimit(left.floor, right.floor) && SameLimit(left.ceiling, right.ceiling));
  Require(left.segments.size() == right.segments.size());
  for (size_t i = 0; i < left.segments.size(); ++i) {
    Require(SameSegment(left.segments[i], right.segments[i]));
  }
}

void RequireWrittenBack(const skyhaul::openair::AirspaceFile& file) {
  for (const CtrRecord& airspace : file.airspaces) {
    for (const AirspaceSegment& segment : airspace.segments) {
      if (!CanBeWritten(segment)) return;
    }
  }
  const std::string text = skyhaul::openair::Write(file.airspaces);
  Require(skyhaul::openair::LooksLike(text));
  skyhaul::openair::AirspaceFile again;
  std::string message;
  const int count = skyhaul::openair::Read(text, again, message);
  Require(count == static_cast<int>(file.airspaces.size()));
  for (size_t i = 0; i < file.airspaces.size(); ++i) {
    RequireSame(file.airspaces[i], again.airspaces[i]);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  skyhaul::openair::AirspaceFile file;
  std::string message;
  const int count = skyhaul::openair::Read(text, file, message);
  if (count < 0) {
    Require(count == -1 && file.airspaces.empty() && file.notes.empty() && !message.empty());
    return 0;
  }
  Require(count > 0 && file.airspaces.size() == static_cast<size_t>(count) && message.empty());
  Require(skyhaul::openair::LooksLike(text));
  for (const CtrRecord& airspace : file.airspaces) {
    Require(!airspace.segments.empty() && airspace.remark.empty() && airspace.number == 0);
    for (const AirspaceSegment& segment : airspace.segments) RequireGoodSegment(segment);
  }
  RequireWrittenBack(file);
  return 0;
}
