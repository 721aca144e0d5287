#include "analysis/airspace_outline.h"

#include <algorithm>
#include <cmath>

#include "core/geodesy/geodesic.h"
#include "core/units.h"

namespace skyhaul {

namespace {

constexpr double kRadiansPerDegree = kPi / 180;

// A turn about a centre, from one bearing and radius to another.
struct Turn {
  AirspacePosition centre;
  double start_bearing_deg = 0;
  double sweep_deg = 0;  // clockwise positive
  double start_radius_m = 0;
  double end_radius_m = 0;
};

GeodesicCourse CourseTo(AirspacePosition from, AirspacePosition to) {
  return GeodesicInverse(SemicirclesToRadians(from.lat), SemicirclesToRadians(from.lon),
                         SemicirclesToRadians(to.lat), SemicirclesToRadians(to.lon));
}

double Sweep_deg(double start_bearing_deg, double end_bearing_deg, char direction) {
  const bool clockwise = direction != kCounterClockwise;
  const double turn = std::fmod(end_bearing_deg - start_bearing_deg, 360);
  // Equal bearings mean a whole turn: an arc of no length has no use in an airspace.
  if (turn == 0) return clockwise ? 360 : -360;
  if (clockwise) return turn < 0 ? turn + 360 : turn;
  return turn > 0 ? turn - 360 : turn;
}

int StepsOf(double sweep_deg, double step_deg) {
  // Of a step: ends rounded to semicircles make an arc of three steps a little more than three.
  constexpr double kRoundingSlack = 0.01;
  // Written so that a step which is not a number becomes the smallest.
  const double step = step_deg >= 0.01 ? std::min(step_deg, 90.0) : 0.01;
  return std::max(1, static_cast<int>(std::ceil(std::abs(sweep_deg) / step - kRoundingSlack)));
}

AirspacePosition PointOfTurn(const Turn& turn, double part) {
  return PositionFrom(turn.centre, turn.start_bearing_deg + turn.sweep_deg * part,
                      turn.start_radius_m + (turn.end_radius_m - turn.start_radius_m) * part);
}

// Both ends are left to the caller.
void AppendInside(const Turn& turn, double step_deg, std::vector<AirspacePosition>& points) {
  const int steps = StepsOf(turn.sweep_deg, step_deg);
  for (int i = 1; i < steps; ++i) {
    points.push_back(PointOfTurn(turn, static_cast<double>(i) / steps));
  }
}

void AppendArcByPoints(const AirspaceSegment& arc, double step_deg,
                       std::vector<AirspacePosition>& points) {
  const GeodesicCourse to_start = CourseTo(arc.point, arc.start);
  const GeodesicCourse to_end = CourseTo(arc.point, arc.end);
  points.push_back(arc.start);
  // Negative when an end is nearly opposite the centre: there is no way between.
  if (to_start.distance_m >= 0 && to_end.distance_m >= 0) {
    const double start_deg = to_start.bearing_rad / kRadiansPerDegree;
    const double end_deg = to_end.bearing_rad / kRadiansPerDegree;
    AppendInside({.centre = arc.point,
                  .start_bearing_deg = start_deg,
                  .sweep_deg = Sweep_deg(start_deg, end_deg, arc.direction),
                  .start_radius_m = to_start.distance_m,
                  .end_radius_m = to_end.distance_m},
                 step_deg, points);
  }
  points.push_back(arc.end);
}

void AppendArcByBearings(const AirspaceSegment& arc, double step_deg,
                         std::vector<AirspacePosition>& points) {
  const ArcEnds ends = EndsOfArc(arc);
  points.push_back(ends.start);
  AppendInside({.centre = arc.point,
                .start_bearing_deg = arc.start_bearing_deg,
                .sweep_deg = Sweep_deg(arc.start_bearing_deg, arc.end_bearing_deg, arc.direction),
                .start_radius_m = arc.radius_m,
                .end_radius_m = arc.radius_m},
               step_deg, points);
  points.push_back(ends.end);
}

void AppendCircle(const AirspaceSegment& circle, double step_deg,
                  std::vector<AirspacePosition>& points) {
  points.push_back(PositionFrom(circle.point, 0, circle.radius_m));
  AppendInside({.centre = circle.point,
                .sweep_deg = 360,
                .start_radius_m = circle.radius_m,
                .end_radius_m = circle.radius_m},
               step_deg, points);
}

}  // namespace

AirspacePosition PositionFrom(AirspacePosition centre, double bearing_deg, double distance_m) {
  const GeodesicPosition position =
      GeodesicDestination(SemicirclesToRadians(centre.lat), SemicirclesToRadians(centre.lon),
                          bearing_deg * kRadiansPerDegree, distance_m);
  return {.lat = RadiansToSemicircles(position.lat_rad),
          .lon = RadiansToSemicircles(position.lon_rad)};
}

ArcEnds EndsOfArc(const AirspaceSegment& arc) {
  return {.start = PositionFrom(arc.point, arc.start_bearing_deg, arc.radius_m),
          .end = PositionFrom(arc.point, arc.end_bearing_deg, arc.radius_m)};
}

std::vector<AirspacePosition> OutlinePoints(const CtrRecord& airspace, double step_deg) {
  std::vector<AirspacePosition> points;
  for (const AirspaceSegment& segment : airspace.segments) {
    switch (segment.type) {
      case SegmentType::kPoint:
        points.push_back(segment.point);
        break;
      case SegmentType::kArcByPoints:
        AppendArcByPoints(segment, step_deg, points);
        break;
      case SegmentType::kArcByBearings:
        AppendArcByBearings(segment, step_deg, points);
        break;
      case SegmentType::kCircle:
        AppendCircle(segment, step_deg, points);
        break;
    }
  }
  return points;
}

}  // namespace skyhaul
