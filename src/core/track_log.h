#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "core/flight.h"

namespace skyhaul {

// The flight that the program works on.
struct TrackLog {
  Flight flight;
  std::vector<uint32_t> selection;  // indices of selected points, ascending; empty: all of them
  uint32_t generation = 0;          // changes with every installation; results carry it
};

// The process-wide current track log. Only the thread that installs track logs may use it.
const TrackLog& CurrentTrackLog();

// Replaces the current track log as a whole: the selection is reset, and the new generation makes
// results that were computed from the old one stale.
void InstallTrackLog(Flight flight);

// Restricts what writers export. Indices beyond the track are dropped.
void SelectTrackPoints(std::vector<uint32_t> selection);

// The points that a writer exports: the selected ones, or all when none is selected.
// Returns 0, or -1 when the selection has a hole.
int SelectedTrackPoints(const TrackLog& log, std::vector<TrackPoint>& points);

}  // namespace skyhaul
