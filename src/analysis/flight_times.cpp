#include "analysis/flight_times.h"

#include <cmath>

#include "core/units.h"

namespace skyhaul {

namespace {

// A single bad fix must not be a take-off; a jump of one fix is averaged over this time.
constexpr uint32_t kStretch_s = 10;
constexpr double kTakeOffSpeed_m_s = 6;
constexpr double kLandingSpeed_m_s = 4;

bool FasterThan(const TrackPoint& from, const TrackPoint& to, double speed_m_s) {
  return NearDistance_m(from, to) > speed_m_s * (to.time - from.time);
}

}  // namespace

double NearDistance_m(const TrackPoint& from, const TrackPoint& to) {
  constexpr double kEarthRadius_m = 6371000;
  // Unsigned subtraction wraps across the 180th meridian the short way.
  const auto lon_step =
      static_cast<int32_t>(static_cast<uint32_t>(to.lon) - static_cast<uint32_t>(from.lon));
  const double mean_lat_rad = (SemicirclesToRadians(from.lat) + SemicirclesToRadians(to.lat)) / 2;
  const double north_rad = SemicirclesToRadians(to.lat) - SemicirclesToRadians(from.lat);
  const double east_rad = SemicirclesToRadians(lon_step) * std::cos(mean_lat_rad);
  return kEarthRadius_m * std::hypot(north_rad, east_rad);
}

FlightTimes FindFlightTimes(std::span<const TrackPoint> points) {
  FlightTimes times = {.take_off = 0, .landing = points.size() - 1};
  size_t from = 0;
  for (size_t to = 1; to < points.size(); ++to) {
    // The shortest stretch of 10 s that ends here, or a longer one across a pause in the record.
    while (from + 1 < to && points[to].time >= points[from + 1].time &&
           points[to].time - points[from + 1].time >= kStretch_s) {
      ++from;
    }
    // Also passes over fixes whose clock was set back.
    if (points[to].time < points[from].time + kStretch_s) continue;
    if (!times.flown && FasterThan(points[from], points[to], kTakeOffSpeed_m_s)) {
      times.flown = true;
      times.take_off = from;
    }
    if (times.flown && FasterThan(points[from], points[to], kLandingSpeed_m_s)) {
      times.landing = to;
    }
  }
  return times;
}

}  // namespace skyhaul
