#include "analysis/row_search.h"

#include <algorithm>

#include "analysis/vector_clones.h"

namespace skyhaul {

SKYHAUL_VECTOR_CLONES int32_t GreatestOf(const int32_t* row, uint32_t from, uint32_t to) {
  int32_t greatest = -1;
  for (uint32_t i = from; i < to; ++i) greatest = std::max(greatest, row[i]);
  return greatest;
}

SKYHAUL_VECTOR_CLONES int32_t GreatestSum(const int32_t* row, const int32_t* rest, uint32_t from,
                                          uint32_t to, int32_t least_m) {
  int32_t greatest = -1;
  for (uint32_t i = from; i < to; ++i) {
    const int32_t sum = row[i] >= least_m ? row[i] + rest[i] : -1;
    greatest = std::max(greatest, sum);
  }
  return greatest;
}

}  // namespace skyhaul
