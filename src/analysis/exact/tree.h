#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "core/track_point.h"

namespace skyhaul {

// A position in metres from the centre of the earth (WGS-84, height 0).
struct Place {
  double x_m = 0;
  double y_m = 0;
  double z_m = 0;
};

inline double Chord_m(const Place& a, const Place& b) {
  const double x_m = a.x_m - b.x_m;
  const double y_m = a.y_m - b.y_m;
  const double z_m = a.z_m - b.z_m;
  return std::sqrt(x_m * x_m + y_m * y_m + z_m * z_m);
}

// How far the ground way between two positions may at most be, given their chord. A geodesic never
// bends more than a circle with the smallest radius R of curvature that the ellipsoid has on its
// way, so that it is at most as long as that circle's arc over the same chord (Schwarz's theorem on
// arcs of bounded curvature): 2 R asin(c / 2 R) = c + c^3 / 24 R^2 + ... The geodesic is never
// shorter than the chord.
//
// R is at least the meridian's radius M at the latitude of the track that is nearest to the
// equator, as the shortest way bends towards the pole. With that for R the bound exceeds the
// geodesic by at most 1.4 % of arc less chord: 1 cm over 100 km, 1.8 m over 500 km to the east. A
// way in direction a has 1 / R <= cos^2 a / M + sin^2 a / N, N being the radius across the
// meridian, and on a track that reaches no farther than H to the north a long way has |cos a| <= (H
// + s^2 tan(lat) / N) / s, as the direction turns by tan(lat) / N at most. The cubic term is then
// at most that of N and a stretch of the chord by (1 / M^2 - 1 / N^2) (H + ...)^2 / 24, which is
// better for wide tracks.
//
// Every form below is convex and rises with the chord, as the search needs it.
struct ArcBound {
  enum class Form { kSeries, kArcSine, kWide } form = Form::kSeries;
  double radius_m = 0;          // M
  double inverse_diameter = 0;  // 1 / 2 M
  double stretch = 1;           // factor of the chord
  double cubic = 0;             // factor of the chord's cube, 1/m^2
};

// For chords of up to 12 000 km when the form is not kWide.
inline double UpperArc_m(const ArcBound& bound, double chord_m) {
  // No way on the ellipsoid is longer than 1.58 times its chord.
  if (bound.form == ArcBound::Form::kWide) return 1.6 * chord_m;
  const double x = chord_m * bound.inverse_diameter;
  if (bound.form == ArcBound::Form::kSeries) {
    // The last coefficient covers all further terms of the arc sine up to x = 0.25.
    const double x_sq = x * x;
    return chord_m * (bound.stretch + chord_m * chord_m * bound.cubic +
                      x_sq * x_sq * (3.0 / 40 + x_sq * 0.05));
  }
  // Corners of boxes can lie farther apart than any fixes; a tangent keeps the bound convex there.
  constexpr double kLast = 0.95;
  const double excess = std::max(x - kLast, 0.0);
  return 2 * bound.radius_m *
         (std::asin(std::min(x, kLast)) + excess / std::sqrt(1 - kLast * kLast));
}

// A range of fixes: 2^level of them from number << level on, fewer at the end of the track.
struct TreeNode {
  uint32_t level = 0;
  uint32_t number = 0;

  friend bool operator==(const TreeNode&, const TreeNode&) = default;
};

// All fixes of a range lie within `thickness` of the convex hull of its corners, so that a convex
// function of a position is greatest at a corner. Up to 4 fixes are their own corners; more have
// the rectangle that their greatest spread lies along.
struct Corners {
  const Place* places = nullptr;
  uint32_t count = 0;
  double thickness_m = 0;
};

struct Ball {
  Place centre;
  double radius_m = 0;
};

// The ranges of a track, halved down to single fixes, with what bounds the distances between them.
// About 120 bytes per fix.
struct TrackTree {
  std::vector<uint32_t> indices;  // into the track: all fixes but those that change no result
  std::vector<Place> places;      // of those
  ArcBound arc;

  struct Box {
    Place corners[4];
    double thickness_m = 0;
  };
  std::vector<std::vector<Ball>> balls;  // by level from 1 and number
  std::vector<std::vector<Box>> boxes;   // by level from kBoxLevel and number
};

inline constexpr uint32_t kBoxLevel = 3;  // ranges of this level and above have rectangles

// The most equal fixes in a row that a result can make use of: it has at most 5 vertices.
inline constexpr uint32_t kRepeats = 5;

TrackTree MakeTrackTree(std::span<const TrackPoint> points);

size_t MemoryOf(const TrackTree& tree);

inline uint32_t SizeOf(const TrackTree& tree) {
  return static_cast<uint32_t>(tree.places.size());
}

// The level whose one range is the whole track.
inline uint32_t TopLevel(const TrackTree& tree) {
  return static_cast<uint32_t>(tree.balls.size()) - 1;
}

inline uint32_t FirstOf(TreeNode node) {
  return node.number << node.level;
}

inline uint32_t LastOf(const TrackTree& tree, TreeNode node) {
  return std::min(((node.number + 1) << node.level), SizeOf(tree)) - 1;
}

inline Corners CornersOf(const TrackTree& tree, TreeNode node) {
  if (node.level >= kBoxLevel) {
    const TrackTree::Box& box = tree.boxes[node.level][node.number];
    return {box.corners, 4, box.thickness_m};
  }
  const uint32_t first = FirstOf(node);
  return {&tree.places[first], LastOf(tree, node) - first + 1, 0};
}

inline Ball BallOf(const TrackTree& tree, TreeNode node) {
  if (node.level == 0) return {tree.places[node.number], 0};
  return tree.balls[node.level][node.number];
}

// No two fixes of the track are farther apart on the ground.
inline double Extent_m(const TrackTree& tree) {
  return UpperArc_m(tree.arc, 2 * BallOf(tree, {TopLevel(tree), 0}).radius_m);
}

// Puts the one or two halves of a range into children and returns how many. The level is above 0.
uint32_t ChildrenOf(const TrackTree& tree, TreeNode node, TreeNode children[2]);

// No two fixes, one of each range, are farther apart on the ground, or nearer.
inline double FarthestByBall_m(const TrackTree& tree, const Ball& a, const Ball& b) {
  return UpperArc_m(tree.arc, Chord_m(a.centre, b.centre) + a.radius_m + b.radius_m);
}
inline double NearestByBall_m(const Ball& a, const Ball& b) {
  return std::max(0.0, Chord_m(a.centre, b.centre) - a.radius_m - b.radius_m);
}

}  // namespace skyhaul
