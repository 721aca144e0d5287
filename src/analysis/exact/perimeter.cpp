#include "analysis/exact/perimeter.h"

#include "analysis/task_rules.h"

namespace skyhaul {

namespace {

// Bounds of a leg between any two corners of two ranges.
using CornerLegs = std::array<std::array<double, 4>, 4>;

// Fills the table and returns its greatest. A chord between two fixes exceeds that between two
// points of the hulls of the corners by at most both thicknesses, and UpperArc_m is convex in both
// ends.
double CornerLegs_m(const ArcBound& arc, const Corners& from, const Corners& to,
                    CornerLegs& legs_m) {
  const double slack_m = from.thickness_m + to.thickness_m;
  double most_m = 0;
  for (uint32_t i = 0; i < from.count; ++i) {
    for (uint32_t j = 0; j < to.count; ++j) {
      legs_m[i][j] = UpperArc_m(arc, Chord_m(from.places[i], to.places[j]) + slack_m);
      most_m = std::max(most_m, legs_m[i][j]);
    }
  }
  return most_m;
}

double BallPerimeter_m(const TrackTree& tree, const std::array<Ball, 3>& balls) {
  return FarthestByBall_m(tree, balls[0], balls[1]) + FarthestByBall_m(tree, balls[1], balls[2]) +
         FarthestByBall_m(tree, balls[0], balls[2]);
}

// Upper bound of an FAI perimeter p from bounds of the sides, which stand in the order first to
// second, second to third, first to third. Every side is at least 0.28 p, so that p is at most any
// side's upper bound divided by 0.28; and as the other two sides are at most 0.72 p, 0.28 times the
// least of these must not exceed 0.72 times the side.
double FaiPerimeter_m(const std::array<Ball, 3>& balls, const std::array<double, 3>& most_m) {
  const std::array<double, 3> least_m = {NearestByBall_m(balls[0], balls[1]),
                                         NearestByBall_m(balls[1], balls[2]),
                                         NearestByBall_m(balls[0], balls[2])};
  double perimeter_m = most_m[0] + most_m[1] + most_m[2];
  const double least_perimeter_m = least_m[0] + least_m[1] + least_m[2];
  constexpr double kRounding = 1e-9;  // so that no triangle at exactly 28 % is lost
  for (size_t i = 0; i < 3; ++i) {
    const double others_m = least_perimeter_m - least_m[i];
    if (most_m[i] * (1 - kFaiSide + kRounding) < kFaiSide * others_m) return 0;
    perimeter_m = std::min(perimeter_m, most_m[i] * (1 / kFaiSide + kRounding));
  }
  return perimeter_m;
}

// Upper bound of an FAI perimeter from the width of a strip that holds all three ranges. A triangle
// whose sides are at least 28 % of the perimeter is nowhere narrower than 17.32 % of it: that is
// the height of the flattest one, 28 : 28 : 44, sqrt(0.28^2 - 0.22^2). The strip runs along the
// longest side. It is level at one turnpoint and tilted at the others by the curvature of the
// earth, less than 0.04 up to the reach below, which the allowance of 1 % covers.
double StripPerimeter_m(const std::array<Ball, 3>& balls, const std::array<Corners, 3>& corners) {
  constexpr double kReach_m = 100000;
  constexpr double kWidth = 0.1732 * 0.99;
  const std::array<double, 3> sides_m = {Chord_m(balls[0].centre, balls[1].centre),
                                         Chord_m(balls[1].centre, balls[2].centre),
                                         Chord_m(balls[0].centre, balls[2].centre)};
  const size_t longest =
      static_cast<size_t>(std::max_element(sides_m.begin(), sides_m.end()) - sides_m.begin());
  const Place& from = balls[longest == 1 ? 1 : 0].centre;
  const Place& to = balls[longest == 0 ? 1 : 2].centre;
  const Place along = {to.x_m - from.x_m, to.y_m - from.y_m, to.z_m - from.z_m};
  const Place side = {along.y_m * from.z_m - along.z_m * from.y_m,
                      along.z_m * from.x_m - along.x_m * from.z_m,
                      along.x_m * from.y_m - along.y_m * from.x_m};
  const double length = std::sqrt(side.x_m * side.x_m + side.y_m * side.y_m + side.z_m * side.z_m);
  constexpr double kUnbounded_m = 1e12;
  if (length == 0) return kUnbounded_m;  // equal centres have no direction
  double least_m = kUnbounded_m;
  double most_m = -kUnbounded_m;
  double reach_m = sides_m[longest];
  for (size_t i = 0; i < 3; ++i) {
    reach_m += 2 * balls[i].radius_m;
    for (uint32_t k = 0; k < corners[i].count; ++k) {
      const Place& at = corners[i].places[k];
      const double off_m = ((at.x_m - from.x_m) * side.x_m + (at.y_m - from.y_m) * side.y_m +
                            (at.z_m - from.z_m) * side.z_m) /
                           length;
      least_m = std::min(least_m, off_m - corners[i].thickness_m);
      most_m = std::max(most_m, off_m + corners[i].thickness_m);
    }
  }
  return reach_m > kReach_m ? kUnbounded_m : (most_m - least_m) / kWidth;
}

// The greatest perimeter over corners, at most 4 * 4 * 4 sums. Sides are not bounded one by one
// here: the corner that is best for one side is not best for the next.
double CornerPerimeter_m(const CornerLegs& first, const CornerLegs& second, const CornerLegs& third,
                         const std::array<Corners, 3>& corners) {
  double most_m = 0;
  for (uint32_t i = 0; i < corners[0].count; ++i) {
    for (uint32_t k = 0; k < corners[2].count; ++k) {
      double over_second_m = 0;
      for (uint32_t j = 0; j < corners[1].count; ++j) {
        over_second_m = std::max(over_second_m, first[i][j] + second[j][k]);
      }
      most_m = std::max(most_m, over_second_m + third[i][k]);
    }
  }
  return most_m;
}

}  // namespace

double LegBound_m(const TrackTree& tree, TreeNode from, TreeNode to) {
  CornerLegs legs_m;
  return CornerLegs_m(tree.arc, CornersOf(tree, from), CornersOf(tree, to), legs_m);
}

double PerimeterBound_m(const TrackTree& tree, const std::array<TreeNode, 3>& ranges, bool fai,
                        double enough_m) {
  const std::array<Ball, 3> balls = {BallOf(tree, ranges[0]), BallOf(tree, ranges[1]),
                                     BallOf(tree, ranges[2])};
  const double ball_m = BallPerimeter_m(tree, balls);
  if (ball_m <= enough_m) return ball_m;
  const std::array<Corners, 3> corners = {CornersOf(tree, ranges[0]), CornersOf(tree, ranges[1]),
                                          CornersOf(tree, ranges[2])};
  std::array<CornerLegs, 3> legs_m;
  const std::array<double, 3> most_m = {CornerLegs_m(tree.arc, corners[0], corners[1], legs_m[0]),
                                        CornerLegs_m(tree.arc, corners[1], corners[2], legs_m[1]),
                                        CornerLegs_m(tree.arc, corners[0], corners[2], legs_m[2])};
  double perimeter_m = most_m[0] + most_m[1] + most_m[2];
  if (fai) perimeter_m = std::min(FaiPerimeter_m(balls, most_m), StripPerimeter_m(balls, corners));
  if (perimeter_m <= enough_m) return perimeter_m;
  return std::min(perimeter_m, CornerPerimeter_m(legs_m[0], legs_m[1], legs_m[2], corners));
}

}  // namespace skyhaul
