#include "analysis/exact/closing.h"

namespace skyhaul {

namespace {

constexpr uint32_t kMaxRanges = 512;    // 4 MB of entries; the table takes milliseconds
constexpr uint32_t kAnswers = 1 << 14;  // for each kind of question, 400 kB

// The part of the track that a pair may be taken from.
struct Room {
  uint32_t last_start;
  uint32_t first_finish;
};

// Replaces the pair by the nearest one of two ranges, when that is nearer: branch and bound over
// halves of the ranges.
void Narrow(const ExactSearch& search, TreeNode starts, TreeNode finishes, const Room& room,
            ExactClosing& pair) {
  const TrackTree& tree = search.tree;
  if (FirstOf(starts) > room.last_start || LastOf(tree, finishes) < room.first_finish) return;
  const Ball start_ball = BallOf(tree, starts);
  const Ball finish_ball = BallOf(tree, finishes);
  // An equal distance is no gain: only the distance matters, not which pair has it.
  if (NearestByBall_m(start_ball, finish_ball) >= pair.distance_m) return;
  if (starts.level == 0 && finishes.level == 0) {
    const double distance_m = Ground_m(search, starts.number, finishes.number);
    if (distance_m < pair.distance_m) pair = {distance_m, starts.number, finishes.number};
    return;
  }
  // The greater ball blurs the bound most.
  const bool halve_starts =
      finishes.level == 0 || (starts.level > 0 && start_ball.radius_m > finish_ball.radius_m);
  TreeNode halves[2];
  const uint32_t count = ChildrenOf(tree, halve_starts ? starts : finishes, halves);
  const Ball& other = halve_starts ? finish_ball : start_ball;
  // The nearer half first: what it finds mostly excludes the other.
  if (count == 2 && Chord_m(BallOf(tree, halves[1]).centre, other.centre) <
                        Chord_m(BallOf(tree, halves[0]).centre, other.centre)) {
    std::swap(halves[0], halves[1]);
  }
  for (uint32_t i = 0; i < count; ++i) {
    if (halve_starts) {
      Narrow(search, halves[i], finishes, room, pair);
    } else {
      Narrow(search, starts, halves[i], room, pair);
    }
  }
}

size_t Entry(const ClosingTable& table, uint32_t last_starts, uint32_t first_finishes) {
  return size_t{last_starts} * table.ranges + first_finishes;
}

// Whether an answer for more starts and finishes answers for this room too: its pair lies within,
// or it says that there is none.
bool Fits(const ClosingTable& table, const ExactClosing& pair, const Room& room) {
  return pair.distance_m >= table.limit_m ||
         (pair.start <= room.last_start && pair.finish >= room.first_finish);
}

const ExactClosing& Nearer(const ExactClosing& a, const ExactClosing& b) {
  return a.distance_m <= b.distance_m ? a : b;
}

ClosingTable::Answer& AnswerFor(std::vector<ClosingTable::Answer>& answers, uint32_t last_start,
                                uint32_t first_finish) {
  // Multiplicative hashing (D. Knuth, The Art of Computer Programming, 6.4): 2^32 and 2^16 divided
  // by the golden ratio.
  return answers[(last_start * 2654435761U ^ first_finish * 40503U) % kAnswers];
}

}  // namespace

ClosingTable MakeClosingTable(ExactSearch& search, double limit_m) {
  const TrackTree& tree = search.tree;
  ClosingTable table;
  table.limit_m = limit_m;
  while ((SizeOf(tree) - 1) >> table.level >= kMaxRanges) ++table.level;
  table.ranges = ((SizeOf(tree) - 1) >> table.level) + 1;
  // Entries with i >= j stay 0, a bound that is always right: starts and finishes share a range.
  table.nearest.resize(size_t{table.ranges} * table.ranges);
  table.closing_answers.resize(kAnswers);
  table.finish_answers.resize(kAnswers);
  const ExactClosing none = {limit_m, 0, 0};
  // Entry (i, j) has the pairs of (i - 1, j), those of (i, j + 1), and the pairs of range i with
  // range j: only these have to be searched, and the other two already limit the search.
  for (uint32_t i = 0; i < table.ranges; ++i) {
    for (uint32_t j = table.ranges - 1; j > i; --j) {
      const ExactClosing fewer_starts = i > 0 ? table.nearest[Entry(table, i - 1, j)] : none;
      const ExactClosing fewer_finishes =
          j + 1 < table.ranges ? table.nearest[Entry(table, i, j + 1)] : none;
      ExactClosing pair = Nearer(fewer_starts, fewer_finishes);
      if (GiveUp(search)) return table;
      Narrow(search, {table.level, i}, {table.level, j}, {UINT32_MAX, 0}, pair);
      table.nearest[Entry(table, i, j)] = pair;
    }
  }
  table.complete = true;
  return table;
}

size_t MemoryOf(const ClosingTable& table) {
  return table.nearest.capacity() * sizeof(ExactClosing) +
         size_t{2} * kAnswers * sizeof(ClosingTable::Answer);
}

double ClosingBound_m(const ClosingTable& table, uint32_t last_start, uint32_t first_finish) {
  return table.nearest[Entry(table, last_start >> table.level, first_finish >> table.level)]
      .distance_m;
}

ExactClosing NearestClosing(ExactSearch& search, ClosingTable& table, uint32_t last_start,
                            uint32_t first_finish) {
  const Room room = {last_start, first_finish};
  const uint32_t i = last_start >> table.level;
  const uint32_t j = first_finish >> table.level;
  const ExactClosing& wider = table.nearest[Entry(table, i, j)];
  // Mostly the nearest pair of whole ranges lies within the room.
  if (i < j && Fits(table, wider, room)) return wider;
  ClosingTable::Answer& answer = AnswerFor(table.closing_answers, last_start, first_finish);
  if (answer.last_start == last_start && answer.first_finish == first_finish) return answer.pair;
  ExactClosing pair = {table.limit_m, 0, 0};
  // The pair of the next smaller ranges lies within the room, which makes it a start to improve on.
  if (i > 0 && j + 1 < table.ranges) pair = table.nearest[Entry(table, i - 1, j + 1)];
  const TreeNode all = {TopLevel(search.tree), 0};
  Narrow(search, all, all, room, pair);
  answer = {last_start, first_finish, pair};
  return pair;
}

ExactClosing NearestFinish(ExactSearch& search, ClosingTable& table, uint32_t start,
                           uint32_t first_finish) {
  // Kept by start alone: the answer for more finishes holds as long as its finish is among these.
  ClosingTable::Answer& answer = AnswerFor(table.finish_answers, start, UINT32_MAX);
  if (answer.last_start == start && answer.first_finish <= first_finish &&
      Fits(table, answer.pair, {start, first_finish})) {
    return answer.pair;
  }
  ExactClosing pair = {table.limit_m, 0, 0};
  Narrow(search, {0, start}, {TopLevel(search.tree), 0}, {start, first_finish}, pair);
  answer = {start, first_finish, pair};
  return pair;
}

double FinishBound_m(const ExactSearch& search, TreeNode starts, uint32_t first_finish,
                     double limit_m) {
  const TrackTree& tree = search.tree;
  const Ball ball = BallOf(tree, starts);
  double bound_m = limit_m;
  std::array<TreeNode, 64> stack;  // one node of each of at most 27 levels, and the last pair
  size_t depth = 0;
  stack[depth++] = {TopLevel(tree), 0};
  while (depth > 0) {
    const TreeNode node = stack[--depth];
    if (LastOf(tree, node) < first_finish) continue;
    const Ball finishes = BallOf(tree, node);
    const double nearest_m = NearestByBall_m(ball, finishes);
    if (nearest_m >= bound_m) continue;
    // A finish ball that is smaller than the starts' own needs no halving: their blur remains.
    if (node.level == 0 || finishes.radius_m <= ball.radius_m) {
      bound_m = nearest_m;
      continue;
    }
    depth += ChildrenOf(tree, node, &stack[depth]);
  }
  return bound_m;
}

}  // namespace skyhaul
