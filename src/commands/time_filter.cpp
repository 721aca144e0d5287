#include "commands/time_filter.h"

#include "core/time_scale.h"

namespace skyhaul {

std::vector<TrackPoint> FilterPoints(std::span<const TrackPoint> points, const TimeFilter& filter) {
  std::vector<TrackPoint> kept;
  if (points.empty()) return kept;
  // Counted from the first fix's midnight, so that a flight over midnight UTC goes on after 24:00.
  const uint32_t midnight = points.front().time - points.front().time % kSecondsPerDay;
  for (const TrackPoint& point : points) {
    // Signed: a clock that was set back gives fixes before the first one's midnight.
    const int64_t second = int64_t{point.time} - midnight;
    if (filter.start_s.has_value() && second < *filter.start_s) continue;
    if (filter.stop_s.has_value() && second > *filter.stop_s) continue;
    kept.push_back(point);
  }
  // The fix that began the segment may have been cut away.
  if (!kept.empty()) kept.front().segment_start = 1;
  return kept;
}

}  // namespace skyhaul
