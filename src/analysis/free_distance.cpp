#include "analysis/free_distance.h"

#include "analysis/row_search.h"

namespace skyhaul {

namespace {

constexpr int32_t kFaiRuleCoarseLeg_m = 10000;  // after rounding: 9999.5 m counts, refining decides

int32_t LeastLeg_m(bool fai_rule) {
  return fai_rule ? kFaiRuleCoarseLeg_m : 0;
}

// The last point of a range that gives a sum found by GreatestSum. It is looked for once, for the
// result alone, because GreatestSum is vector code that keeps no index.
uint32_t LastWithSum(const int32_t* row, const int32_t* rest, uint32_t from, uint32_t to,
                     int32_t least_m, int32_t sum) {
  uint32_t i = to - 1;
  while (i > from && (row[i] < least_m || row[i] + rest[i] != sum)) --i;
  return i;
}

}  // namespace

CoarseVertices Farthest2Points(const DistanceTable& table) {
  CoarseVertices found;
  int32_t best_m = 0;
  for (uint32_t i = 0; i + 1 < table.count; ++i) {
    // Less, not less or equal, here and below: of equal sums the later counts.
    if (table.after.distance_m[i] < best_m) continue;
    best_m = table.after.distance_m[i];
    found = {.count = 2, .points = {i, table.after.index[i]}};
  }
  return found;
}

CoarseVertices Farthest3Points(const DistanceTable& table) {
  CoarseVertices found;
  int32_t best_m = 0;
  for (uint32_t k = 1; k + 1 < table.count; ++k) {
    const int32_t sum_m = table.before.distance_m[k] + table.after.distance_m[k];
    if (sum_m < best_m) continue;
    best_m = sum_m;
    found = {.count = 3, .points = {table.before.index[k], k, table.after.index[k]}};
  }
  return found;
}

CoarseVertices Farthest4Points(const DistanceTable& table, bool fai_rule) {
  const int32_t* after = table.after.distance_m.data();
  const int32_t least_m = LeastLeg_m(fai_rule);
  int32_t best_m = 0;
  int32_t best_rest_m = -1;
  uint32_t b = 0;
  // The first leg is the longest to any point before i, the last the longest from any point after
  // the second turnpoint: only the turnpoints are searched.
  for (uint32_t i = 1; i + 2 < table.count; ++i) {
    const int32_t rest_m = GreatestSum(RowOf(table, i), after, i + 1, table.count - 1, least_m);
    if (rest_m < 0 || table.before.distance_m[i] + rest_m < best_m) continue;
    best_m = table.before.distance_m[i] + rest_m;
    best_rest_m = rest_m;
    b = i;
  }
  if (best_rest_m < 0) return {};
  const uint32_t c =
      LastWithSum(RowOf(table, b), after, b + 1, table.count - 1, least_m, best_rest_m);
  return {.count = 4, .points = {table.before.index[b], b, c, table.after.index[c]}};
}

CoarseVertices Farthest5Points(const DistanceTable& table, bool fai_rule) {
  const int32_t* before = table.before.distance_m.data();
  const int32_t* after = table.after.distance_m.data();
  const int32_t least_m = LeastLeg_m(fai_rule);
  int32_t best_first_m = -1;
  int32_t best_rest_m = -1;
  uint32_t c = 0;
  // For a given middle turnpoint the two legs before it and the two after it are independent.
  for (uint32_t i = 2; i + 2 < table.count; ++i) {
    const int32_t first_m = GreatestSum(RowOf(table, i), before, 1, i, least_m);
    const int32_t rest_m = GreatestSum(RowOf(table, i), after, i + 1, table.count - 1, least_m);
    if (first_m < 0 || rest_m < 0 || first_m + rest_m < best_first_m + best_rest_m) continue;
    best_first_m = first_m;
    best_rest_m = rest_m;
    c = i;
  }
  if (best_rest_m < 0) return {};
  const int32_t* row = RowOf(table, c);
  const uint32_t b = LastWithSum(row, before, 1, c, least_m, best_first_m);
  const uint32_t d = LastWithSum(row, after, c + 1, table.count - 1, least_m, best_rest_m);
  return {.count = 5, .points = {table.before.index[b], b, c, d, table.after.index[d]}};
}

}  // namespace skyhaul
