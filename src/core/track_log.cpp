#include "core/track_log.h"

#include <algorithm>
#include <utility>

namespace skyhaul {

namespace {

TrackLog& Current() {
  static TrackLog log;
  return log;
}

}  // namespace

const TrackLog& CurrentTrackLog() {
  return Current();
}

void InstallTrackLog(Flight flight) {
  TrackLog& log = Current();
  log.flight = std::move(flight);
  log.selection.clear();
  ++log.generation;
}

void SelectTrackPoints(std::vector<uint32_t> selection) {
  TrackLog& log = Current();
  std::sort(selection.begin(), selection.end());
  selection.erase(std::unique(selection.begin(), selection.end()), selection.end());
  std::erase_if(selection, [&](uint32_t index) { return index >= log.flight.points.size(); });
  log.selection = std::move(selection);
}

int SelectedTrackPoints(const TrackLog& log, std::vector<TrackPoint>& points) {
  if (log.selection.empty()) {
    points = log.flight.points;
    return 0;
  }
  const uint32_t first = log.selection.front();
  const uint32_t last = log.selection.back();
  if (last - first + 1 != log.selection.size()) return -1;
  points.assign(log.flight.points.begin() + first, log.flight.points.begin() + last + 1);
  return 0;
}

}  // namespace skyhaul
