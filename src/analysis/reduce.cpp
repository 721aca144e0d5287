#include "analysis/reduce.h"

#include "analysis/projection.h"

namespace skyhaul {

ReducedTrack ReduceTrack(std::span<const TrackPoint> points) {
  ReducedTrack reduced;
  const PlaneProjection projection = ProjectionFor(points);
  const size_t count = points.size();
  const size_t step = count > kMaxReduced ? kMaxReduced - 1 : count;
  // After fix i, 1 + (i + 1) * step / count points have been taken, rounded down: the first,
  // because the sum begins full, and with the last exactly kMaxReduced. In whole numbers, as J. E.
  // Bresenham draws a line (1965), so that every machine takes the same fixes.
  size_t sum = count;
  for (size_t i = 0; i < count; ++i) {
    sum += step;
    if (sum < count) continue;
    sum -= count;
    const PlanePoint place = ToPlane(projection, points[i].lat, points[i].lon);
    reduced.indices.push_back(static_cast<uint32_t>(i));
    reduced.x_m.push_back(place.x_m);
    reduced.y_m.push_back(place.y_m);
  }
  return reduced;
}

}  // namespace skyhaul
