#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "core/track_point.h"

namespace skyhaul {

// What of a flight is written: the fixes from start to stop, both included, in seconds since 00:00
// UTC of the day of the flight's first fix. Without a limit everything on that side is written.
struct TimeFilter {
  std::optional<uint32_t> start_s;
  std::optional<uint32_t> stop_s;
};

inline bool IsGiven(const TimeFilter& filter) {
  return filter.start_s.has_value() || filter.stop_s.has_value();
}

// The fixes that the filter lets through; the first of them begins a segment. May be empty.
std::vector<TrackPoint> FilterPoints(std::span<const TrackPoint> points, const TimeFilter& filter);

}  // namespace skyhaul
