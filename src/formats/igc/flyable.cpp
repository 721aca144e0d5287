#include "formats/igc/flyable.h"

#include <algorithm>
#include <cstdlib>

#include "core/geodesy/geodesic.h"
#include "core/time_scale.h"
#include "core/units.h"
#include "formats/igc/fields.h"

namespace skyhaul::igc {

namespace {

constexpr uint32_t kLongestGap_s = kSecondsPerDay / 2;
constexpr uint32_t kLoneEndGap_s = 3600;
constexpr size_t kMostWrongInARow = 16;
constexpr size_t kNone = ~size_t{0};

uint32_t Gap_s(uint32_t time_of_day_s, uint32_t previous_time_of_day_s) {
  return (time_of_day_s + kSecondsPerDay - previous_time_of_day_s) % kSecondsPerDay;
}

bool CanBeClimbed(int32_t from, int32_t to, int64_t units_per_m, uint32_t time_s) {
  if (from == 0 || to == 0) return true;
  return std::abs(int64_t{to} - from) <=
         (int64_t{time_s} + 1) * kFastestClimb_m_per_s * units_per_m;
}

// The search for the longest row of fixes. Each fix has the best row that ends with it.
struct Search {
  std::span<const TimedFix> fixes;
  std::vector<uint32_t> length;    // of that row
  std::vector<size_t> previous;    // in that row
  std::vector<size_t> last_place;  // the last fix of that row that has a place
  size_t longest = 0;              // the fix that ends the longest of all
};

bool Reaches(const Search& search, size_t from, size_t to) {
  const TimedFix& fix = search.fixes[to];
  const uint32_t gap_s = Gap_s(fix.time_of_day_s, search.fixes[from].time_of_day_s);
  if (gap_s == 0 || gap_s > kLongestGap_s) return false;
  // Fixes without a place in between must not be stepping stones for a jump.
  const size_t anchor = search.last_place[from];
  if (!fix.has_place || anchor == kNone) return true;
  const TrackPoint& start = search.fixes[anchor].point;
  const uint32_t time_s = Gap_s(fix.time_of_day_s, search.fixes[anchor].time_of_day_s);
  return CanBeClimbed(start.pressure_alt, fix.point.pressure_alt, 1, time_s) &&
         CanBeClimbed(start.gps_alt_dm, fix.point.gps_alt_dm, 10, time_s) &&
         CanBeFlown(start, fix.point, time_s);
}

void Place(Search& search, size_t i) {
  size_t best = kNone;
  const auto consider = [&](size_t from) {
    const uint32_t length = best == kNone ? 0 : search.length[best];
    if (search.length[from] > length && Reaches(search, from, i)) best = from;
  };
  const size_t first = i - std::min(i, kMostWrongInARow);
  for (size_t from = i; from > first; --from) {
    consider(from - 1);
    // Nothing is longer than the longest: in a good flight this ends at the fix before.
    if (best != kNone && search.length[best] == search.length[search.longest]) break;
  }
  if (i > 0 && search.longest < first) consider(search.longest);
  search.length[i] = best == kNone ? 1 : search.length[best] + 1;
  search.previous[i] = best;
  const bool has_place = search.fixes[i].has_place;
  search.last_place[i] = has_place ? i : best == kNone ? kNone : search.last_place[best];
  if (search.length[i] > search.length[search.longest]) search.longest = i;
}

// Drops the one fix at each end of the row that is alone with its time.
void DropLoneEnds(std::span<const TimedFix> fixes, std::vector<size_t>& row) {
  const auto gap_s = [&](size_t place) {
    return Gap_s(fixes[row[place + 1]].time_of_day_s, fixes[row[place]].time_of_day_s);
  };
  if (row.size() > 2 && gap_s(0) >= kLoneEndGap_s) row.erase(row.begin());
  if (row.size() > 2 && gap_s(row.size() - 2) >= kLoneEndGap_s) row.pop_back();
}

bool IsNowhere(const TrackPoint& point) {
  return point.lat == 0 && point.lon == 0;
}

bool IsReached(const TrackPoint& from, const TrackPoint& to) {
  // A clock that is set back leaves no time to fly, and so only a place nearby.
  return CanBeFlown(from, to, to.time > from.time ? to.time - from.time : 0);
}

// Gives the points days of their own again, from that of the first one on.
void CountDays(std::vector<TrackPoint>& points, uint32_t midnight) {
  uint32_t previous_s = 0;
  for (TrackPoint& point : points) {
    const uint32_t time_of_day_s = point.time % kSecondsPerDay;
    if (IsPastMidnight(time_of_day_s, previous_s)) midnight += kSecondsPerDay;
    point.time = midnight + time_of_day_s;
    previous_s = time_of_day_s;
  }
}

// Removes the points that do not stay.
LeftOutFixes Remove(const std::vector<bool>& stays, std::vector<TrackPoint>& points,
                    std::vector<FixSource>& sources) {
  LeftOutFixes left_out;
  const uint32_t midnight =
      points.empty() ? 0 : points.front().time / kSecondsPerDay * kSecondsPerDay;
  size_t kept = 0;
  for (size_t i = 0; i < points.size(); ++i) {
    if (!stays[i]) {
      if (left_out.count++ == 0) left_out.first_line = sources[i].line;
      continue;
    }
    points[kept] = points[i];
    sources[kept++] = sources[i];
  }
  if (left_out.count == 0) return left_out;
  points.resize(kept);
  sources.resize(kept);
  // The track begins with what is its first fix now.
  if (kept > 0) points.front().segment_start = 1;
  CountDays(points, midnight);
  return left_out;
}

}  // namespace

bool CanBeFlown(const TrackPoint& from, const TrackPoint& to, uint32_t time_s) {
  const double distance_m =
      GeodesicDistance_m(SemicirclesToRadians(from.lat), SemicirclesToRadians(from.lon),
                         SemicirclesToRadians(to.lat), SemicirclesToRadians(to.lon));
  // Negative: nearly antipodal. One more second, because recorders cut times to whole ones.
  return distance_m >= 0 && distance_m <= kFastest_m_per_s * (1.0 + time_s);
}

bool FollowsSoon(uint32_t time_of_day_s, uint32_t previous_time_of_day_s) {
  const uint32_t gap_s = Gap_s(time_of_day_s, previous_time_of_day_s);
  return gap_s > 0 && gap_s < kLoneEndGap_s;
}

std::vector<bool> FindFlight(std::span<const TimedFix> fixes) {
  std::vector<bool> belongs(fixes.size(), false);
  if (fixes.empty()) return belongs;
  Search search = {.fixes = fixes,
                   .length = std::vector<uint32_t>(fixes.size(), 0),
                   .previous = std::vector<size_t>(fixes.size(), kNone),
                   .last_place = std::vector<size_t>(fixes.size(), kNone)};
  for (size_t i = 0; i < fixes.size(); ++i) Place(search, i);
  std::vector<size_t> row;
  for (size_t i = search.longest; i != kNone; i = search.previous[i]) row.push_back(i);
  std::reverse(row.begin(), row.end());
  DropLoneEnds(fixes, row);
  for (const size_t i : row) belongs[i] = true;
  return belongs;
}

LeftOutFixes LeaveOutUnknownPlaces(std::vector<TrackPoint>& points,
                                   std::vector<FixSource>& sources) {
  size_t next_valid = 0;
  const TrackPoint* previous = nullptr;
  std::vector<bool> stays(points.size());
  for (size_t i = 0; i < points.size(); ++i) {
    next_valid = std::max(next_valid, i);
    while (next_valid < points.size() && !sources[next_valid].valid) ++next_valid;
    stays[i] = sources[i].valid ||
               (!IsNowhere(points[i]) && (previous == nullptr || IsReached(*previous, points[i])) &&
                (next_valid == points.size() || IsReached(points[i], points[next_valid])));
    if (stays[i]) previous = &points[i];
  }
  return Remove(stays, points, sources);
}

LeftOutFixes LeaveOutMarked(std::vector<TrackPoint>& points, std::vector<FixSource>& sources) {
  std::vector<bool> stays(points.size());
  std::transform(sources.begin(), sources.end(), stays.begin(),
                 [](const FixSource& source) { return source.valid; });
  return Remove(stays, points, sources);
}

}  // namespace skyhaul::igc
