#pragma once

#include <array>
#include <vector>

#include "analysis/exact/search.h"

namespace skyhaul {

// The walk over corners that analysis/exact/free.h describes.

inline constexpr double kNothing_m = -1e12;  // the sum of no track; far below zero with legs added

using CornerSums = std::array<double, 4>;

// The candidates for one vertex, ascending in the track.
struct Layer {
  std::vector<TreeNode> nodes;
  std::vector<Ball> balls;
  std::vector<CornerSums> before;  // greatest sum of the legs up to this vertex, by corner
  std::vector<CornerSums> after;   // of those from it on
  std::vector<double> most_before;
  std::vector<double> most_after;  // until computed that of the range it was halved from: a bound
};

// A leg between two candidates, by their places in their layers.
struct Leg {
  uint32_t from;
  uint32_t to;
};

// The legs from one layer to the next that may still lead above the floor. When they are too many
// to be listed, all pairs have to be looked at.
struct LegList {
  std::vector<Leg> legs;
  bool listed = false;
};

struct FreeSearch {
  ExactSearch& shared;
  OptimiseTask task;
  TaskResult& best;
  std::vector<Layer> layers;
  std::vector<LegList> lists;  // list k is from layer k to k + 1
};

// Whether the FAI rule gives that leg of the task a least length.
bool Ruled(const FreeSearch& search, size_t leg);

// Upper bounds of the sum of all legs of a track that passes through a candidate, and through both
// ends of a leg. After SearchLayers.
double ThroughNode_m(const FreeSearch& search, const Layer& layer, size_t at);
double ThroughLeg_m(const FreeSearch& search, size_t list, size_t from, size_t to);

// Fills the sums of every candidate from both sides. Sums that cannot lead above the floor may be
// left too low, which throws nothing else away. Incomplete when the search was given up.
void SearchLayers(FreeSearch& search);

// Calls look(from, to, longest_m) for the legs of a list that the rules do not forbid; longest_m is
// an upper bound by balls. Ends early when the search has to be given up.
template <typename Look>
void ForEachLeg(FreeSearch& search, size_t list, Look look) {
  const TrackTree& tree = search.shared.tree;
  const Layer& from = search.layers[list];
  const Layer& to = search.layers[list + 1];
  const double least_leg_m = Ruled(search, list) ? kFaiRuleLeg_m : 0;
  const auto look_at = [&](size_t u, size_t v) {
    const double longest_m = FarthestByBall_m(tree, from.balls[u], to.balls[v]);
    // A leg that is too short even by its upper bound breaks the FAI rule.
    if (longest_m >= least_leg_m) look(u, v, longest_m);
    return !GiveUp(search.shared);
  };
  if (search.lists[list].listed) {
    for (const Leg& leg : search.lists[list].legs) {
      if (!look_at(leg.from, leg.to)) return;
    }
    return;
  }
  for (size_t v = 0; v < to.nodes.size(); ++v) {
    const uint32_t last = LastOf(tree, to.nodes[v]);
    // A leg needs a fix of u before a fix of v. Candidates ascend, so that the rest has none
    // either.
    for (size_t u = 0; u < from.nodes.size() && FirstOf(from.nodes[u]) < last; ++u) {
      if (!look_at(u, v)) return;
    }
  }
}

}  // namespace skyhaul
