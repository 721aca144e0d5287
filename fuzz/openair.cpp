// Any bytes as an OpenAir file: what is read lies in its range, and written it is read again.

#include "core/airspace.h"

#include <cmath>

#include "formats/openair/lines.h"
#include "formats/openair/read_openair.h"
#include "formats/openair/write_openair.h"
#include "fuzz/frame.h"

namespace skyhaul {

namespace {

void RequireGoodSegment(const AirspaceSegment& segment) {
  constexpr int64_t kPole = 1 << 30;
  for (const auto& position : {segment.point, segment.start, segment.end}) {
    Require(std::abs(int64_t{position.lat}) <= kPole);
  }
  Require(segment.radius_m >= 0 && segment.radius_m <= 5400 * 1852.0);
  Require(segment.start_bearing_deg >= 0 && segment.start_bearing_deg <= 360);
  Require(segment.end_bearing_deg >= 0 && segment.end_bearing_deg <= 360);
  Require(segment.direction == kClockwise || segment.direction == kCounterClockwise);
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
  return segment.radius_m == 0 || segment.radius_m > 1e-6;
}

void RequireSame(const CtrRecord& left, const CtrRecord& right) {
  Require(left.name == right.name);
  Require(left.airspace_class == right.airspace_class || left.airspace_class.empty());
  Require(left.floor == right.floor && left.ceiling == right.ceiling);
  for (const openair::DetailCode& detail : openair::kDetailCodes) {
    Require(left.*detail.field == right.*detail.field);
  }
  Require(std::ranges::equal(left.segments, right.segments, SameSegment));
}

void RequireWrittenBack(const openair::AirspaceFile& file) {
  for (const CtrRecord& airspace : file.airspaces) {
    if (!std::ranges::all_of(airspace.segments, CanBeWritten)) return;
    // A damaged airspace may have lost all of its outline, and then is not read again.
    if (airspace.segments.empty()) return;
  }
  const std::string text = openair::Write(file.airspaces);
  Require(openair::LooksLike(text));
  openair::AirspaceFile again;
  std::string message;
  const int count = openair::Read(text, again, message);
  Require(count == static_cast<int>(file.airspaces.size()));
  for (size_t i = 0; i < file.airspaces.size(); ++i) {
    RequireSame(file.airspaces[i], again.airspaces[i]);
  }
}

}  // namespace

void Fuzz(std::string_view text) {
  openair::AirspaceFile file;
  std::string message;
  const int count = openair::Read(text, file, message);
  Require(count != 0);
  RequireAllOrNothing(count, file.airspaces.size(), message);
  Require(count > 0 || (file.notes.empty() && file.damage.empty()));
  const bool looks_like = openair::LooksLike(text);
  for (const CtrRecord& airspace : file.airspaces) {
    Require(!airspace.segments.empty() || !airspace.damage.empty());
    Require(airspace.segments.empty() || looks_like);
    Require(airspace.remark.empty() && !airspace.warning_m);
    std::ranges::for_each(airspace.segments, RequireGoodSegment);
  }
  if (count > 0) RequireWrittenBack(file);
}

}  // namespace skyhaul
