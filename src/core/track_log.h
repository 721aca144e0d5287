#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "core/track_point.h"

namespace skyhaul {

// The IGC text that an instrument delivered itself, unchanged, and what its A record says.
struct InstrumentIgc {
  bool expected = false;  // the instrument delivers such texts, so only that text may be saved
  std::string text;
  std::string manufacturer;  // up to 3 characters
  std::string serial;        // up to 3 characters
};

// The flight that the program works on.
struct TrackLog {
  std::vector<TrackPoint> points;
  std::vector<uint32_t> selection;  // indices of selected points, ascending; empty: all of them
  InstrumentIgc instrument_igc;     // nothing is expected when the points came in another way
  uint32_t generation = 0;          // changes with every installation; results carry it
};

// The process-wide current track log. Only the thread that installs track logs may use it.
const TrackLog& CurrentTrackLog();

// Replaces the current track log as a whole: the selection is reset, and the new generation makes
// results that were computed from the old one stale.
void InstallTrackLog(std::vector<TrackPoint> points, InstrumentIgc instrument_igc = {});

// Restricts what writers export. Indices beyond the track are dropped.
void SelectTrackPoints(std::vector<uint32_t> selection);

// The points that a writer exports: the selected ones, or all when none is selected.
// Returns 0, or -1 when the selection has a hole.
int SelectedTrackPoints(const TrackLog& log, std::vector<TrackPoint>& points);

}  // namespace skyhaul
