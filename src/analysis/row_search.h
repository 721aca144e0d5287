#pragma once

#include <cstdint>

namespace skyhaul {

// Searches over ranges [from, to) of rows of distances in whole metres. All return -1 for an empty
// range.

int32_t GreatestOf(const int32_t* row, uint32_t from, uint32_t to);

// The greatest row[i] + rest[i] with row[i] at least least_m; -1 when there is none.
int32_t GreatestSum(const int32_t* row, const int32_t* rest, uint32_t from, uint32_t to,
                    int32_t least_m);

}  // namespace skyhaul
