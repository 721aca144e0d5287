#include "analysis/exact/free.h"

#include "analysis/exact/layers.h"
#include "analysis/task_rules.h"

namespace skyhaul {

namespace {

constexpr double kUnknown_m = 1e12;     // above every sum
constexpr uint32_t kFirstRanges = 128;  // at most, at the beginning: 8000 legs a layer

void AddNode(Layer& layer, const TrackTree& tree, TreeNode node, double most_after_m) {
  layer.nodes.push_back(node);
  layer.balls.push_back(BallOf(tree, node));
  layer.most_after.push_back(most_after_m);
}

// Every track passes through one candidate of the first layer, so that this bounds them all.
double GreatestSum_m(const FreeSearch& search) {
  double most_m = 0;
  for (size_t i = 0; i < search.layers[0].nodes.size(); ++i) {
    most_m = std::max(most_m, ThroughNode_m(search, search.layers[0], i));
  }
  return most_m;
}

uint32_t FixNearCorner(const TrackTree& tree, TreeNode node, uint32_t corner) {
  const Place& place = CornersOf(tree, node).places[corner];
  uint32_t best = FirstOf(node);
  for (uint32_t i = best + 1; i <= LastOf(tree, node); ++i) {
    if (Chord_m(tree.places[i], place) < Chord_m(tree.places[best], place)) best = i;
  }
  return best;
}

// Follows the greatest sums vertex by vertex and offers the fixes nearest to their corners. This
// proves nothing; it finds good results early, which lets the next walk throw away more.
void OfferGreatest(FreeSearch& search) {
  const TrackTree& tree = search.shared.tree;
  std::vector<uint32_t> fixes;
  Corners at;
  for (size_t k = 0; k < search.layers.size(); ++k) {
    const Layer& layer = search.layers[k];
    double most_m = kNothing_m;
    size_t node = 0;
    uint32_t corner = 0;
    const uint32_t earliest = fixes.empty() ? 0 : fixes.back() + 1;
    for (size_t v = 0; v < layer.nodes.size(); ++v) {
      if (LastOf(tree, layer.nodes[v]) < earliest) continue;
      const Corners corners = CornersOf(tree, layer.nodes[v]);
      for (uint32_t i = 0; i < corners.count; ++i) {
        // From the fix that was chosen before; a chord is near enough to choose by.
        const double leg_m = k == 0 ? 0 : Chord_m(at.places[0], corners.places[i]);
        if (Ruled(search, k - 1) && leg_m < kFaiRuleLeg_m) continue;
        if (leg_m + layer.after[v][i] <= most_m) continue;
        most_m = leg_m + layer.after[v][i];
        node = v;
        corner = i;
      }
    }
    if (most_m < 0) return;
    fixes.push_back(std::max(FixNearCorner(tree, layer.nodes[node], corner), earliest));
    at = {&tree.places[fixes.back()], 1, 0};
  }
  OfferResult(search.shared, search.task, fixes, search.best);
}

// Where the halves of a layer's candidates stand in the layer that takes its place.
using Halves = std::vector<Leg>;  // first and end

// A single fix stays as it is: the last round only throws away.
void AddHalves(const TrackTree& tree, TreeNode node, double most_after_m, Layer& layer) {
  if (node.level == 0) {
    AddNode(layer, tree, node, most_after_m);
    return;
  }
  TreeNode children[2];
  const uint32_t count = ChildrenOf(tree, node, children);
  for (uint32_t i = 0; i < count; ++i) AddNode(layer, tree, children[i], most_after_m);
}

// Throws away what cannot score above the floor and halves the rest.
Layer HalveLayer(const FreeSearch& search, const Layer& layer, Halves& halves) {
  const double floor_m = FloorOf(search.best);
  Layer halved;
  for (size_t i = 0; i < layer.nodes.size(); ++i) {
    const auto first = static_cast<uint32_t>(halved.nodes.size());
    if (ThroughNode_m(search, layer, i) > floor_m) {
      AddHalves(search.shared.tree, layer.nodes[i], layer.most_after[i], halved);
    }
    halves.push_back({first, static_cast<uint32_t>(halved.nodes.size())});
  }
  return halved;
}

// The legs between halves of candidates whose own leg may lead above the floor; halves of a leg
// that cannot need not be looked at. Beyond a limit the list is given up, so that memory stays
// linear in the number of fixes: all pairs are looked at in the next round, which is slower and as
// right.
LegList HalveLegs(FreeSearch& search, size_t list, const std::vector<Layer>& halved,
                  const std::vector<Halves>& halves) {
  constexpr size_t kLegsPerFix = 16;
  constexpr size_t kLeastLegs = 1 << 18;
  const TrackTree& tree = search.shared.tree;
  const size_t limit = kLegsPerFix * SizeOf(tree) + kLeastLegs;
  const double floor_m = FloorOf(search.best);
  const Layer& from = search.layers[list];
  const Layer& to = search.layers[list + 1];
  LegList result = {.legs = {}, .listed = true};
  ForEachLeg(search, list, [&](size_t u, size_t v, double longest_m) {
    if (!result.listed) return;
    // First by balls, which costs one square root, then by corners, up to sixteen.
    if (from.most_before[u] + longest_m + to.most_after[v] <= floor_m) return;
    if (ThroughLeg_m(search, list, u, v) <= floor_m) return;
    for (uint32_t i = halves[list][u].from; i < halves[list][u].to; ++i) {
      for (uint32_t j = halves[list + 1][v].from; j < halves[list + 1][v].to; ++j) {
        const bool ascends =
            FirstOf(halved[list].nodes[i]) < LastOf(tree, halved[list + 1].nodes[j]);
        if (ascends) result.legs.push_back({i, j});
      }
    }
    result.listed = result.legs.size() < limit;
  });
  if (!result.listed) result.legs = {};
  return result;
}

void Refine(FreeSearch& search) {
  std::vector<Layer> halved;
  std::vector<Halves> halves(search.layers.size());
  for (size_t k = 0; k < search.layers.size(); ++k) {
    halved.push_back(HalveLayer(search, search.layers[k], halves[k]));
  }
  std::vector<LegList> lists;
  for (size_t k = 0; k < search.lists.size(); ++k) {
    lists.push_back(HalveLegs(search, k, halved, halves));
  }
  search.layers = std::move(halved);
  search.lists = std::move(lists);
}

// Single fixes are left: the same walk with the ground distances themselves, and with the fix that
// each greatest sum came from. Geodesics are computed only for legs whose bounds may still lead
// above the floor.
void WalkFixes(FreeSearch& search) {
  std::vector<std::vector<double>> sums(search.layers.size());
  std::vector<std::vector<size_t>> came_from(search.layers.size());
  sums[0].assign(search.layers[0].nodes.size(), 0);
  for (size_t k = 1; k < search.layers.size(); ++k) {
    const Layer& from = search.layers[k - 1];
    const Layer& to = search.layers[k];
    sums[k].assign(to.nodes.size(), kNothing_m);
    came_from[k].assign(to.nodes.size(), 0);
    ForEachLeg(search, k - 1, [&](size_t u, size_t v, double longest_m) {
      if (sums[k - 1][u] + longest_m + to.most_after[v] <= FloorOf(search.best)) return;
      const double leg_m = Ground_m(search.shared, from.nodes[u].number, to.nodes[v].number);
      if (Ruled(search, k - 1) && leg_m < kFaiRuleLeg_m) return;
      if (sums[k - 1][u] + leg_m <= sums[k][v]) return;
      sums[k][v] = sums[k - 1][u] + leg_m;
      came_from[k][v] = u;
    });
  }
  size_t at = static_cast<size_t>(std::max_element(sums.back().begin(), sums.back().end()) -
                                  sums.back().begin());
  if (sums.back().empty() || sums.back()[at] < 0) return;
  std::vector<uint32_t> fixes(search.layers.size());
  for (size_t k = search.layers.size(); k-- > 0;) {
    fixes[k] = search.layers[k].nodes[at].number;
    if (k > 0) at = came_from[k][at];
  }
  OfferResult(search.shared, search.task, fixes, search.best);
}

size_t MemoryOf(const FreeSearch& search) {
  size_t nodes = 0;
  size_t legs = 0;
  for (const LegList& list : search.lists) legs += list.legs.capacity();
  for (const Layer& layer : search.layers) nodes += layer.nodes.capacity();
  return legs * sizeof(Leg) +
         nodes * (sizeof(TreeNode) + sizeof(Ball) + 2 * sizeof(CornerSums) + 2 * sizeof(double));
}

void BeginLayers(FreeSearch& search) {
  const TrackTree& tree = search.shared.tree;
  uint32_t level = 0;
  while ((SizeOf(tree) - 1) >> level >= kFirstRanges) ++level;
  Layer layer;
  for (uint32_t i = 0; i <= (SizeOf(tree) - 1) >> level; ++i) {
    AddNode(layer, tree, {level, i}, kUnknown_m);
  }
  search.layers.assign(ShapeOf(search.task).vertices, layer);
  search.lists.resize(search.layers.size() - 1);
}

}  // namespace

double SearchFree(ExactSearch& shared, OptimiseTask task, TaskResult& best) {
  FreeSearch search = {shared, task, best, {}, {}};
  BeginLayers(search);
  double bound_m = (ShapeOf(task).vertices - 1) * Extent_m(shared.tree);
  NoteBound(shared.progress, bound_m, FloorOf(best));
  bool fixes = false;
  while (!search.layers[0].nodes.empty() && !fixes) {
    SearchLayers(search);
    // A walk that was broken off has bounded nothing: the bound of the round before holds.
    if (shared.stopped) return std::max(bound_m, best.score_m);
    bound_m = std::min(bound_m, std::max(GreatestSum_m(search), FloorOf(best)));
    NoteBound(shared.progress, bound_m, FloorOf(best));
    NoteMemory(shared, MemoryOf(search));
    OfferGreatest(search);
    fixes = search.layers[0].nodes[0].level == 0;
    Refine(search);
  }
  if (!search.layers[0].nodes.empty()) WalkFixes(search);
  if (shared.stopped) return std::max(bound_m, best.score_m);
  return FloorOf(best);
}

}  // namespace skyhaul
