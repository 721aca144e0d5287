#include "core/text/letter_case.h"
#include "core/text/scan.h"
#include "formats/openair/fields.h"
#include "formats/openair/reading.h"

namespace skyhaul::openair {

namespace {

constexpr const char* kNoCentre = "no centre (V X=) before it";
constexpr const char* kBadPosition = "position not understood";
constexpr const char* kBadRadius = "radius not understood";

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

// "V D=-" for counter-clockwise
const char* ReadDirection(Reading& reading, std::string_view value) {
  const bool understood =
      (value.starts_with('+') || value.starts_with('-')) && IsMarkedComment(value.substr(1));
  reading.faults.direction.reset();
  reading.cost = HasOutline(value) ? Cost::kOutline : Cost::kDirection;
  if (!understood) return "direction not understood";
  reading.direction = value.front() == '-' ? kCounterClockwise : kClockwise;
  return nullptr;
}

// "V X=47:30:00 N 008:15:30 E"
const char* ReadCentre(Reading& reading, std::string_view value) {
  // After a broken centre there is none, lest an arc turn about the one before.
  const bool position = TakePosition(value, reading.centre);
  reading.has_centre = position && IsComment(value);
  reading.faults.centre.reset();
  // A record behind it is lost whether or not the centre is needed.
  reading.cost = position && HasOutline(value) ? Cost::kOutline : Cost::kCentre;
  return reading.has_centre ? nullptr : kBadPosition;
}

// "V Y=47:30:00 N 008:15:30 E": a position can only have been meant as a centre. "V W=5" is a
// width.
const char* MissVariable(Reading& reading, std::string_view value) {
  if (!HasOutline(value)) return "not understood";
  reading.has_centre = false;
  AirspacePosition ignored;
  // "V W=5DP 47:30:00 N 008:15:30 E" has lost a point.
  const bool only_centre = TakePosition(value, ignored) && !HasOutline(value);
  reading.cost = only_centre ? Cost::kCentre : Cost::kOutline;
  return "not understood";
}

// An arc turns the wrong way when its direction was broken.
void AddArc(Reading& reading, const AirspaceSegment& arc) {
  Blame(reading.faults, reading.faults.direction, Airspace(reading));
  Airspace(reading).segments.push_back(arc);
}

}  // namespace

CtrRecord& Airspace(Reading& reading) {
  return reading.file.airspaces.back();
}

const char* ReadVariable(Reading& reading, std::string_view argument) {
  const size_t equals = argument.find('=');
  const std::string_view name = TrimBlanks(argument.substr(0, equals));
  if (equals == std::string_view::npos || name.size() != 1) return MissVariable(reading, argument);
  const std::string_view value = TrimBlanks(argument.substr(equals + 1));
  const char variable = UpperLetter(name.front());
  if (variable == 'X') return ReadCentre(reading, value);
  if (variable == 'D') return ReadDirection(reading, value);
  return MissVariable(reading, value);
}

// "DP 47:30:00 N 008:15:30 E", with or without "; the church" behind it.
const char* ReadPoint(Reading& reading, std::string_view argument) {
  AirspaceSegment point;
  if (!TakePosition(argument, point.point) || !IsComment(argument)) return kBadPosition;
  Airspace(reading).segments.push_back(point);
  return nullptr;
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

// "DB 47:30:00 N 008:15:30 E,47:20:00 N 008:10:00 E": from and to, about the centre of the last
// V X=.
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

}  // namespace skyhaul::openair
