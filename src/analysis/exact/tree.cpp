#include "analysis/exact/tree.h"

#include <array>
#include <cmath>

#include "core/geodesy/ellipsoid.h"
#include "core/units.h"

namespace skyhaul {

namespace {

// Sums of coordinates of 6.4e6 m are right to some 1e-9 m each; balls and boxes get this much more,
// so that no fix lies outside of them.
constexpr double kRounding_m = 1e-6;

// Axes at a point of the earth: two along the ground and the one that points up.
struct Axes {
  Place along;
  Place across;
  Place up;
};

// From latitude and longitude to rectangular coordinates, height 0.
Place PlaceOf(const TrackPoint& point) {
  const double lat_rad = SemicirclesToRadians(point.lat);
  const double lon_rad = SemicirclesToRadians(point.lon);
  const double sin_lat = std::sin(lat_rad);
  // The radius of curvature across the meridian.
  const double normal_m =
      kSemiMajorAxis_m / std::sqrt(1 - kEccentricitySquared * sin_lat * sin_lat);
  const double axis_m = normal_m * std::cos(lat_rad);
  return {axis_m * std::cos(lon_rad), axis_m * std::sin(lon_rad),
          normal_m * (1 - kEccentricitySquared) * sin_lat};
}

// The first axis lies along the greatest spread of the places, seen from above: the principal axis
// of their covariance (K. Pearson, 1901). Any axes would give a box that holds all places, only a
// wider one, so that a sample will do.
Axes AxesOf(std::span<const Place> places) {
  constexpr size_t kSamples = 64;
  const Place& middle = places[places.size() / 2];
  const Place up = Unit(middle);
  // Near a pole the earth's axis points up and gives no direction along the ground.
  const Place aside = std::abs(up.z_m) < 0.9 ? Place{0, 0, 1} : Place{1, 0, 0};
  const Place east = Unit(Cross(aside, up));
  const Place north = Cross(up, east);
  const size_t step = std::max<size_t>(1, places.size() / kSamples);
  double count = 0;
  double sums[5] = {};  // e, n, e e, e n, n n
  for (size_t i = 0; i < places.size(); i += step) {
    const Place from_middle = Difference(places[i], middle);
    const double e_m = Dot(from_middle, east);
    const double n_m = Dot(from_middle, north);
    const double terms[5] = {e_m, n_m, e_m * e_m, e_m * n_m, n_m * n_m};
    for (size_t k = 0; k < 5; ++k) sums[k] += terms[k];
    ++count;
  }
  const double ee = sums[2] - sums[0] * sums[0] / count;
  const double en = sums[3] - sums[0] * sums[1] / count;
  const double nn = sums[4] - sums[1] * sums[1] / count;
  // All places equal gives atan2(0, 0), which is 0: any direction is right then.
  const double turn = 0.5 * std::atan2(2 * en, ee - nn);
  const Place along = Sum(Sum({}, std::cos(turn), east), std::sin(turn), north);
  return {along, Cross(up, along), up};
}

void MakeBox(std::span<const Place> places, TrackTree::Box& box, Ball& ball) {
  const Axes axes = AxesOf(places);
  const Place& origin = places[places.size() / 2];
  Extent along;
  Extent across;
  Extent up;
  for (const Place& place : places) {
    const Place from_origin = Difference(place, origin);
    Include(along, Dot(from_origin, axes.along));
    Include(across, Dot(from_origin, axes.across));
    Include(up, Dot(from_origin, axes.up));
  }
  // The rectangle lies at half the height, so that what is above and below is within the thickness.
  const double half_along_m = Half(along) + kRounding_m;
  const double half_across_m = Half(across) + kRounding_m;
  box.thickness_m = Half(up) + kRounding_m;
  ball.centre = Sum(Sum(Sum(origin, Middle(along), axes.along), Middle(across), axes.across),
                    Middle(up), axes.up);
  ball.radius_m = std::hypot(half_along_m, half_across_m, box.thickness_m);
  for (size_t i = 0; i < 4; ++i) {
    const Place side = Sum(ball.centre, i % 2 == 0 ? half_along_m : -half_along_m, axes.along);
    box.corners[i] = Sum(side, i < 2 ? half_across_m : -half_across_m, axes.across);
  }
}

// About the mean of the places: tighter than the ball around a box for the few of a short range.
Ball BallAround(std::span<const Place> places) {
  Ball ball;
  for (const Place& place : places) {
    ball.centre = Sum(ball.centre, 1 / static_cast<double>(places.size()), place);
  }
  for (const Place& place : places) {
    ball.radius_m = std::max(ball.radius_m, Chord_m(ball.centre, place) + kRounding_m);
  }
  return ball;
}

// A pilot who waits on the ground sends the same position for minutes.
void KeepUsefulFixes(std::span<const TrackPoint> points, TrackTree& tree) {
  uint32_t repeats = 0;
  for (size_t i = 0; i < points.size(); ++i) {
    const bool same =
        i > 0 && points[i].lat == points[i - 1].lat && points[i].lon == points[i - 1].lon;
    repeats = same ? repeats + 1 : 0;
    if (repeats >= kRepeats) continue;
    tree.indices.push_back(static_cast<uint32_t>(i));
    tree.places.push_back(repeats > 0 ? tree.places.back() : PlaceOf(points[i]));
  }
}

}  // namespace

TrackTree MakeTrackTree(std::span<const TrackPoint> points) {
  TrackTree tree;
  KeepUsefulFixes(points, tree);
  tree.arc = ArcBoundOf(points, tree.places);
  // Level 0 stays empty: a single fix is its own ball and corner.
  tree.balls.resize(1);
  tree.boxes.resize(1);
  const std::span<const Place> places = tree.places;
  for (uint32_t level = 1; (SizeOf(tree) - 1) >> (level - 1) > 0; ++level) {
    const uint32_t count = ((SizeOf(tree) - 1) >> level) + 1;
    tree.balls.emplace_back(count);
    tree.boxes.emplace_back(level >= kBoxLevel ? count : 0);
    for (uint32_t number = 0; number < count; ++number) {
      const TreeNode node = {level, number};
      const uint32_t first = FirstOf(node);
      const auto range = places.subspan(first, LastOf(tree, node) - first + 1);
      Ball& ball = tree.balls[level][number];
      if (level >= kBoxLevel) {
        MakeBox(range, tree.boxes[level][number], ball);
      } else {
        ball = BallAround(range);
      }
    }
  }
  return tree;
}

size_t MemoryOf(const TrackTree& tree) {
  size_t bytes = tree.indices.capacity() * sizeof(uint32_t);
  bytes += tree.places.capacity() * sizeof(Place);
  for (const auto& level : tree.balls) bytes += level.capacity() * sizeof(Ball);
  for (const auto& level : tree.boxes) bytes += level.capacity() * sizeof(TrackTree::Box);
  return bytes;
}

uint32_t ChildrenOf(const TrackTree& tree, TreeNode node, TreeNode children[2]) {
  children[0] = {node.level - 1, node.number * 2};
  children[1] = {node.level - 1, node.number * 2 + 1};
  return FirstOf(children[1]) < SizeOf(tree) ? 2 : 1;
}

}  // namespace skyhaul
