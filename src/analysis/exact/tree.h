#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "analysis/exact/arc_bound.h"
#include "analysis/exact/place.h"
#include "core/track_point.h"

namespace skyhaul {

// A range of fixes: 2^level of them from number << level on, fewer at the end of the track.
struct TreeNode {
  uint32_t level = 0;
  uint32_t number = 0;

  friend bool operator==(const TreeNode&, const TreeNode&) = default;
};

// All fixes of a range lie within thickness_m of the convex hull of its corners, so that a convex
// function of the position is greatest at a corner, up to the thickness. Up to 4 fixes are their
// own corners; longer ranges have a rectangle along their greatest spread.
struct Corners {
  const Place* places = nullptr;
  uint32_t count = 0;
  double thickness_m = 0;
};

// All fixes of a range lie within radius_m of the centre.
struct Ball {
  Place centre;
  double radius_m = 0;
};

// The ranges of a track, halved down to single fixes, with the balls and rectangles that bound the
// distances between them. About 120 bytes per fix.
struct TrackTree {
  std::vector<uint32_t> indices;  // into the track; see kRepeats
  std::vector<Place> places;      // of those fixes
  ArcBound arc;

  struct Box {
    Place corners[4];
    double thickness_m = 0;
  };
  std::vector<std::vector<Ball>> balls;  // by level from 1 and number
  std::vector<std::vector<Box>> boxes;   // by level from kBoxLevel and number
};

inline constexpr uint32_t kBoxLevel = 3;  // ranges of this level and above have rectangles

// Equal fixes in a row that the tree keeps. A task has at most 5 vertices, so that further ones
// change no result.
inline constexpr uint32_t kRepeats = 5;

// The track must have at least one fix.
TrackTree MakeTrackTree(std::span<const TrackPoint> points);

// The bytes that the tree holds.
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

// Upper bound of the ground distance of any two fixes of the track.
inline double Extent_m(const TrackTree& tree) {
  return UpperArc_m(tree.arc, 2 * BallOf(tree, {TopLevel(tree), 0}).radius_m);
}

// Puts the one or two halves of a range into children and returns how many. The level is above 0.
uint32_t ChildrenOf(const TrackTree& tree, TreeNode node, TreeNode children[2]);

// Upper and lower bounds of the ground distance between a fix of one range and a fix of the other.
// The lower one is that of the chord, which no ground distance is shorter than.
inline double FarthestByBall_m(const TrackTree& tree, const Ball& a, const Ball& b) {
  return UpperArc_m(tree.arc, Chord_m(a.centre, b.centre) + a.radius_m + b.radius_m);
}
inline double NearestByBall_m(const Ball& a, const Ball& b) {
  return std::max(0.0, Chord_m(a.centre, b.centre) - a.radius_m - b.radius_m);
}

}  // namespace skyhaul
