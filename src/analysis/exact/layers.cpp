#include "analysis/exact/layers.h"

namespace skyhaul {

namespace {

double Most(const CornerSums& sums, uint32_t count) {
  return *std::max_element(sums.begin(), sums.begin() + count);
}

double Least(const CornerSums& sums, uint32_t count) {
  return *std::min_element(sums.begin(), sums.begin() + count);
}

void PrepareSums(Layer& layer, double before_m) {
  CornerSums none;
  none.fill(kNothing_m);
  CornerSums first;
  first.fill(before_m);
  layer.before.assign(layer.nodes.size(), first);
  layer.after.assign(layer.nodes.size(), none);
  layer.most_before.assign(layer.nodes.size(), before_m);
}

// Raises the sums at the corners `to` to the greatest of the sums at the corners `from` plus the
// leg between. The thicknesses are added to the chord before its arc is bounded: the arc grows
// faster than the chord.
void Extend(const ArcBound& arc, const Corners& from, const CornerSums& from_sums,
            const Corners& to, CornerSums& to_sums) {
  const double slack_m = from.thickness_m + to.thickness_m;
  for (uint32_t j = 0; j < to.count; ++j) {
    for (uint32_t i = 0; i < from.count; ++i) {
      const double leg_m = UpperArc_m(arc, Chord_m(from.places[i], to.places[j]) + slack_m);
      to_sums[j] = std::max(to_sums[j], from_sums[i] + leg_m);
    }
  }
}

// least_m is the least of a candidate's sums: a leg whose sum by balls does not exceed it can raise
// none of them, which saves its sixteen corner legs. A leg that cannot lead above the floor
// together with all that may follow is left out as well.
void WalkForward(FreeSearch& search, size_t vertex) {
  const TrackTree& tree = search.shared.tree;
  const Layer& from = search.layers[vertex - 1];
  Layer& to = search.layers[vertex];
  const double floor_m = FloorOf(search.best);
  std::vector<double> least_m(to.nodes.size(), kNothing_m);
  ForEachLeg(search, vertex - 1, [&](size_t u, size_t v, double longest_m) {
    const double sum_m = from.most_before[u] + longest_m;
    if (sum_m <= least_m[v] || sum_m + to.most_after[v] <= floor_m) return;
    const Corners corners = CornersOf(tree, to.nodes[v]);
    Extend(tree.arc, CornersOf(tree, from.nodes[u]), from.before[u], corners, to.before[v]);
    least_m[v] = Least(to.before[v], corners.count);
    to.most_before[v] = Most(to.before[v], corners.count);
  });
}

// The same from the last vertex on. most_before is known from the walk forward, so that more is
// left out.
void WalkBackward(FreeSearch& search, size_t vertex) {
  const TrackTree& tree = search.shared.tree;
  const Layer& from = search.layers[vertex + 1];
  Layer& to = search.layers[vertex];
  const double floor_m = FloorOf(search.best);
  std::vector<double> least_m(to.nodes.size(), kNothing_m);
  to.most_after.assign(to.nodes.size(), kNothing_m);
  ForEachLeg(search, vertex, [&](size_t v, size_t u, double longest_m) {
    const double sum_m = from.most_after[u] + longest_m;
    if (sum_m <= least_m[v] || sum_m + to.most_before[v] <= floor_m) return;
    const Corners corners = CornersOf(tree, to.nodes[v]);
    Extend(tree.arc, CornersOf(tree, from.nodes[u]), from.after[u], corners, to.after[v]);
    least_m[v] = Least(to.after[v], corners.count);
    to.most_after[v] = Most(to.after[v], corners.count);
  });
}

}  // namespace

// Only legs between two turnpoints; the first and the last leg are free.
bool Ruled(const FreeSearch& search, size_t leg) {
  if (!search.shared.settings.fai_rule) return false;
  if (search.task == OptimiseTask::kFree4) return leg == 1;
  return search.task == OptimiseTask::kFree5 && (leg == 1 || leg == 2);
}

// Both sums belong to the same corner: a track passes the candidate at one place.
double ThroughNode_m(const FreeSearch& search, const Layer& layer, size_t at) {
  double most_m = kNothing_m;
  const uint32_t count = CornersOf(search.shared.tree, layer.nodes[at]).count;
  for (uint32_t i = 0; i < count; ++i) {
    most_m = std::max(most_m, layer.before[at][i] + layer.after[at][i]);
  }
  return most_m;
}

double ThroughLeg_m(const FreeSearch& search, size_t list, size_t from, size_t to) {
  const TrackTree& tree = search.shared.tree;
  const Layer& layer = search.layers[list + 1];
  const Corners corners = CornersOf(tree, layer.nodes[to]);
  CornerSums sums;
  sums.fill(kNothing_m);
  Extend(tree.arc, CornersOf(tree, search.layers[list].nodes[from]),
         search.layers[list].before[from], corners, sums);
  for (uint32_t i = 0; i < corners.count; ++i) sums[i] += layer.after[to][i];
  return Most(sums, corners.count);
}

void SearchLayers(FreeSearch& search) {
  const size_t last = search.layers.size() - 1;
  for (size_t k = 0; k <= last; ++k) PrepareSums(search.layers[k], k == 0 ? 0 : kNothing_m);
  for (size_t k = 1; k <= last; ++k) WalkForward(search, k);
  for (CornerSums& sums : search.layers[last].after) sums.fill(0);
  search.layers[last].most_after.assign(search.layers[last].nodes.size(), 0);
  for (size_t k = last; k-- > 0;) WalkBackward(search, k);
}

}  // namespace skyhaul
