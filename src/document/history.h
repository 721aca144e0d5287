#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "core/airspace.h"
#include "core/file_waypoint.h"
#include "core/flight.h"

namespace skyhaul {

enum class ListKind { kFlight, kWaypoints, kAirspaces };
inline constexpr size_t kListCount = 3;

// The three lists of a document.
struct Lists {
  std::shared_ptr<const Flight> flight;
  std::shared_ptr<const std::vector<FileWaypoint>> waypoints;
  std::shared_ptr<const std::vector<CtrRecord>> airspaces;
};

// Where a list came from.
struct Source {
  enum class Origin { kNone, kFile, kInstrument };
  Origin origin = Origin::kNone;
  std::string name;  // the file's path, or the instrument's description
};

struct ListState {
  Source source;
  bool modified = false;    // no file has the list as it is
  uint32_t generation = 0;  // changes with every replacement, undo and redo; results carry it
};

// One change of one list: what it was before the change, or after it when the change was taken
// back. Of the lists only the one of the kind is held.
struct HistoryStep {
  std::string title;
  ListKind kind = ListKind::kFlight;
  Lists other;
  Source source;
  bool modified = false;
};

// Bounds of what undo holds on to: a flight of 100,000 fixes is 3.2 MB, ten thousand waypoints are
// about 1 MB. The last step is kept whatever it weighs, since that is the one a person needs.
inline constexpr size_t kMostSteps = 100;
inline constexpr size_t kMostHistoryBytes = size_t{64} << 20;

struct History {
  std::deque<HistoryStep> undo;  // the latest change last
  std::deque<HistoryStep> redo;  // the change taken back last is last
};

// Adds a change, which leaves nothing to redo, and drops the oldest steps beyond the bounds.
void AddStep(History& history, HistoryStep step);

}  // namespace skyhaul
