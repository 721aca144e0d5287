#pragma once

#include <cstdint>
#include <optional>
#include <span>
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

// One flight, on its whole way from the driver or a file's reader to the document and to a file's
// writer. It is moved on that way, because a long one is tens of megabytes.
struct Flight {
  std::vector<TrackPoint> points;
  InstrumentIgc instrument_igc;  // nothing is expected when the points came in another way
  std::string missing;           // what of it did not arrive, as a text; empty: it is whole
  uint32_t index = 0;            // TrackListEntry::index; 0 for an instrument's only flight
};

// The points that a writer exports: those of the selection (indices, ascending, each within
// points), or all of them when nothing is selected. Empty when the selection has a hole.
std::optional<std::span<const TrackPoint>> SelectedPoints(std::span<const TrackPoint> points,
                                                          std::span<const uint32_t> selection);

}  // namespace skyhaul
