#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "analysis/distance_table.h"
#include "analysis/vector_clones.h"

namespace skyhaul {

// Legs from each point of a block to each of another.
struct Tile {
  alignas(64) std::array<std::array<int32_t, kBlockPoints>, kBlockPoints> leg_m;
};

// Reads the tile between two blocks from the upper half of the table, which holds each leg once. It
// stands here as inline code to become part of each clone of the functions that use it.
SKYHAUL_ALWAYS_INLINE void LoadTile(const DistanceTable& table, uint32_t rows, uint32_t columns,
                                    Tile& tile) {
  const size_t stride = table.stride;
  const int32_t* corner = table.cells.get() +
                          size_t{std::min(rows, columns)} * kBlockPoints * stride +
                          size_t{std::max(rows, columns)} * kBlockPoints;
  for (uint32_t r = 0; r < kBlockPoints; ++r) {
    const int32_t* line = corner + r * stride;
    for (uint32_t c = 0; c < kBlockPoints; ++c) {
      if (rows < columns) {
        tile.leg_m[r][c] = line[c];
      } else if (rows > columns || r < c) {
        tile.leg_m[c][r] = line[c];
        if (rows == columns) tile.leg_m[r][c] = line[c];
      } else if (r == c) {
        tile.leg_m[r][c] = 0;
      }
    }
  }
}

}  // namespace skyhaul
