#include "analysis/exact/closed.h"

#include "analysis/exact/perimeter.h"
#include "analysis/exact/queue.h"

namespace skyhaul {

namespace {

// One closed task being searched.
struct ClosedSearch {
  ExactSearch& shared;
  ClosingTable& table;
  OptimiseTask task;
  TaskResult& best;
  size_t turnpoints;
  CandidateQueue queue;
};

// --- Out and return ------------------------------------------------------------------------------

void OfferReturn(ClosedSearch& search, uint32_t start, uint32_t turn) {
  const ExactClosing pair = NearestFinish(search.shared, search.table, start, turn + 1);
  if (pair.distance_m >= search.table.limit_m) return;
  const uint32_t fixes[] = {start, turn, pair.finish};
  OfferResult(search.shared, search.task, fixes, search.best);
}

// Upper bound of the score with start and turn from the ranges, 0 when there is no such track. Each
// bound costs more than the one before it, and most candidates fall to the first ones.
double ReturnBound_m(const ClosedSearch& search, const Candidate& candidate) {
  const TrackTree& tree = search.shared.tree;
  const TreeNode starts = candidate.ranges[0];
  const TreeNode turns = candidate.ranges[1];
  // The turn is at least one fix after the first start, the finish one after the turn.
  const uint32_t first_finish = std::max(FirstOf(turns), FirstOf(starts) + 1) + 1;
  if (FirstOf(starts) >= LastOf(tree, turns) || first_finish >= SizeOf(tree)) return 0;
  const double closing_m = ClosingBound_m(search.table, LastOf(tree, starts), first_finish);
  if (closing_m >= search.table.limit_m) return 0;
  const double ball_m =
      2 * FarthestByBall_m(tree, BallOf(tree, starts), BallOf(tree, turns)) - closing_m;
  if (ball_m <= FloorOf(search.best)) return ball_m;
  const double out_m = LegBound_m(tree, starts, turns);
  if (2 * out_m - closing_m <= FloorOf(search.best)) return 2 * out_m - closing_m;
  const double finish_m = FinishBound_m(search.shared, starts, first_finish, search.table.limit_m);
  return finish_m >= search.table.limit_m ? 0 : 2 * out_m - std::max(closing_m, finish_m);
}

// --- Triangles -----------------------------------------------------------------------------------

void OfferTriangle(ClosedSearch& search, const std::array<TreeNode, 3>& at) {
  const ExactClosing pair =
      NearestClosing(search.shared, search.table, at[0].number - 1, at[2].number + 1);
  if (pair.distance_m >= search.table.limit_m) return;
  const uint32_t fixes[] = {pair.start, at[0].number, at[1].number, at[2].number, pair.finish};
  OfferResult(search.shared, search.task, fixes, search.best);
}

// The last fix that the first turnpoint can be, and the first that the third can be, when each
// turnpoint comes after the one before and a fix is left at both ends for start and finish. Returns
// false when the ranges have no room for all five vertices.
bool TriangleRoom(const TrackTree& tree, const std::array<TreeNode, 3>& at, uint32_t& last_first,
                  uint32_t& first_third) {
  const uint32_t earliest = std::max(FirstOf(at[0]), 1U);
  const uint32_t second = std::max(FirstOf(at[1]), earliest + 1);
  first_third = std::max(FirstOf(at[2]), second + 1);
  if (second > LastOf(tree, at[1]) || first_third > LastOf(tree, at[2])) return false;
  if (earliest > LastOf(tree, at[0]) || first_third + 1 >= SizeOf(tree)) return false;
  const uint32_t latest = std::min(LastOf(tree, at[2]), SizeOf(tree) - 2);
  const uint32_t last_second = std::min(LastOf(tree, at[1]), latest - 1);
  last_first = std::min(LastOf(tree, at[0]), last_second - 1);
  return true;
}

// Upper bound of the score with the turnpoints from the ranges, 0 when there is no such track.
// Again the cheap bounds come first.
double TriangleBound_m(const ClosedSearch& search, const Candidate& candidate) {
  const TrackTree& tree = search.shared.tree;
  const auto& at = candidate.ranges;
  uint32_t last_first = 0;
  uint32_t first_third = 0;
  if (!TriangleRoom(tree, at, last_first, first_third)) return 0;
  const double closing_m = ClosingBound_m(search.table, last_first - 1, first_third + 1);
  if (closing_m >= search.table.limit_m) return 0;
  const double floor_m = FloorOf(search.best);
  const double perimeter_m =
      PerimeterBound_m(tree, at, search.task == OptimiseTask::kFaiTriangle, floor_m + closing_m);
  // Where the ranges overlap, start and finish have no order, and no better closing bound is known.
  if (perimeter_m - closing_m <= floor_m || last_first > first_third + 1)
    return perimeter_m - closing_m;
  const double exact_m =
      NearestClosing(search.shared, search.table, last_first - 1, first_third + 1).distance_m;
  return exact_m >= search.table.limit_m ? 0 : perimeter_m - exact_m;
}

// --- Both ----------------------------------------------------------------------------------------

// The turnpoint with the widest range, whose halving tightens the bound most; search.turnpoints
// when all ranges are single fixes.
size_t WidestOf(const ClosedSearch& search, const Candidate& candidate) {
  size_t widest = search.turnpoints;
  double widest_m = -1;
  for (size_t i = 0; i < search.turnpoints; ++i) {
    if (candidate.ranges[i].level == 0) continue;
    const double radius_m = BallOf(search.shared.tree, candidate.ranges[i]).radius_m;
    if (radius_m > widest_m) widest = i;
    widest_m = std::max(widest_m, radius_m);
  }
  return widest;
}

double BoundOf(const ClosedSearch& search, const Candidate& candidate) {
  return search.task == OptimiseTask::kOutAndReturn ? ReturnBound_m(search, candidate)
                                                    : TriangleBound_m(search, candidate);
}

void OfferCandidate(ClosedSearch& search, const Candidate& candidate) {
  if (search.task == OptimiseTask::kOutAndReturn) {
    OfferReturn(search, candidate.ranges[0].number, candidate.ranges[1].number);
  } else {
    OfferTriangle(search, candidate.ranges);
  }
}

void Halve(ClosedSearch& search, const Candidate& candidate, size_t turnpoint) {
  TreeNode halves[2];
  const uint32_t count = ChildrenOf(search.shared.tree, candidate.ranges[turnpoint], halves);
  for (uint32_t i = 0; i < count; ++i) {
    Candidate child = candidate;
    child.ranges[turnpoint] = halves[i];
    // A part cannot score more than the whole, even when its own bound happens to be weaker.
    child.bound_m = std::min(candidate.bound_m, BoundOf(search, child));
    if (child.bound_m > FloorOf(search.best)) AddCandidate(search.queue, child);
  }
}

void NoteMemory(const ClosedSearch& search) {
  NoteMemory(search.shared, MemoryOf(search.table) +
                                (search.queue.heap.capacity() + search.queue.stack.capacity()) *
                                    sizeof(Candidate));
}

double SearchClosed(ClosedSearch& search) {
  // Flights need some thousand candidates at once; laps on one circle would fill the memory.
  constexpr size_t kCandidatesPerFix = 8;
  constexpr size_t kLeastCandidates = 1 << 16;
  const TrackTree& tree = search.shared.tree;
  const TreeNode all = {TopLevel(tree), 0};
  search.queue.limit = kCandidatesPerFix * SizeOf(tree) + kLeastCandidates;
  // No triangle has a longer perimeter, and no out-and-return more than twice the extent.
  AddCandidate(search.queue, {3 * Extent_m(tree), {all, all, all}});
  Candidate candidate;
  while (Pop(search.queue, candidate)) {
    // Pushed when the best was less.
    if (candidate.bound_m <= FloorOf(search.best)) continue;
    // The stack's candidates do not bound those that wait in the heap.
    if (search.queue.stack.empty()) {
      NoteBound(search.shared.progress, candidate.bound_m, FloorOf(search.best));
    }
    if (GiveUp(search.shared)) {
      NoteMemory(search);
      return std::max({candidate.bound_m, GreatestBound_m(search.queue), FloorOf(search.best)});
    }
    const size_t widest = WidestOf(search, candidate);
    if (widest == search.turnpoints) {
      OfferCandidate(search, candidate);
    } else {
      Halve(search, candidate, widest);
    }
  }
  NoteMemory(search);
  // Whatever was thrown away had a bound of at most the floor of its time, and the floor only
  // rises.
  return FloorOf(search.best);
}

}  // namespace

double SearchReturn(ExactSearch& search, ClosingTable& table, TaskResult& best) {
  ClosedSearch closed = {search, table, OptimiseTask::kOutAndReturn, best, 2, {}};
  return SearchClosed(closed);
}

double SearchTriangle(ExactSearch& search, ClosingTable& table, OptimiseTask task,
                      TaskResult& best) {
  ClosedSearch closed = {search, table, task, best, 3, {}};
  return SearchClosed(closed);
}

}  // namespace skyhaul
