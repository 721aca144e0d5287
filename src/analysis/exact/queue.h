#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <vector>

#include "analysis/exact/tree.h"

namespace skyhaul {

// Ranges that the turnpoints of a closed task are taken from, and what the task can score there.
struct Candidate {
  double bound_m = 0;
  std::array<TreeNode, 3> ranges = {};
};

// Candidates, the greatest bound first. Beyond `limit` of them new ones are taken last in, first
// out, which needs room for one per halving only: the memory stays linear in the number of fixes.
// The order decides how soon a good result is found, not which result is proved.
struct CandidateQueue {
  std::vector<Candidate> heap;
  std::vector<Candidate> stack;
  size_t limit = 0;
};

inline bool HasLowerBound(const Candidate& a, const Candidate& b) {
  return a.bound_m < b.bound_m;
}

inline void AddCandidate(CandidateQueue& queue, const Candidate& candidate) {
  if (queue.heap.size() >= queue.limit) {
    queue.stack.push_back(candidate);
    return;
  }
  queue.heap.push_back(candidate);
  std::push_heap(queue.heap.begin(), queue.heap.end(), HasLowerBound);
}

// Returns false when there is none left. The stack goes first, or it would grow without end.
inline bool Pop(CandidateQueue& queue, Candidate& candidate) {
  std::vector<Candidate>& from = queue.stack.empty() ? queue.heap : queue.stack;
  if (from.empty()) return false;
  if (queue.stack.empty()) std::pop_heap(from.begin(), from.end(), HasLowerBound);
  candidate = from.back();
  from.pop_back();
  return true;
}

// The greatest bound of all, 0 when there is none. Looks through the whole stack: for the end of a
// search only.
inline double GreatestBound_m(const CandidateQueue& queue) {
  double bound_m = queue.heap.empty() ? 0 : queue.heap.front().bound_m;
  for (const Candidate& candidate : queue.stack) bound_m = std::max(bound_m, candidate.bound_m);
  return bound_m;
}

}  // namespace skyhaul
