#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include "analysis/optimise.h"
#include "core/track_point.h"

namespace skyhaul {

// One flight's distances as they are shown.
struct FlightScore {
  std::string file;
  size_t fixes = 0;
  OptimiseSettings settings;
  OptimiseResult result;
};

// A small table: task, kilometres with two decimals, closing distance, points of the statistics,
// and the vertices with time and position below it. points are the fixes that the result's indices
// mean. Lines end with a line feed.
std::string ScoreText(const FlightScore& score, std::span<const TrackPoint> points);

// A JSON array with an object per flight; docs/scoring.md has the keys.
std::string ScoresJson(std::span<const FlightScore> scores);

}  // namespace skyhaul
