#include "core/flight.h"

#include <cstddef>

namespace skyhaul {

std::optional<std::span<const TrackPoint>> SelectedPoints(std::span<const TrackPoint> points,
                                                          std::span<const uint32_t> selection) {
  if (selection.empty()) return points;
  // Ascending indices have no hole exactly when there are as many as their ends lie apart.
  const size_t first = selection.front();
  const size_t count = selection.back() - first + 1;
  if (count != selection.size()) return std::nullopt;
  return points.subspan(first, count);
}

}  // namespace skyhaul
