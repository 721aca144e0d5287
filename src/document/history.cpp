#include "document/history.h"

#include <utility>

namespace skyhaul {

namespace {

// The fixes and the instrument's text are nearly all of a flight; its short texts do not count.
size_t Bytes(const Flight& flight) {
  return flight.points.size() * sizeof(TrackPoint) + flight.instrument_igc.text.size();
}

size_t Bytes(const std::vector<FileWaypoint>& waypoints) {
  size_t bytes = waypoints.size() * sizeof(FileWaypoint);
  for (const FileWaypoint& waypoint : waypoints) {
    // Short texts live inside the record and are counted twice, which errs on the safe side.
    bytes += waypoint.name.size() + waypoint.description.size() + waypoint.comment.size();
  }
  return bytes;
}

size_t Bytes(const std::vector<CtrRecord>& airspaces) {
  size_t bytes = airspaces.size() * sizeof(CtrRecord);
  for (const CtrRecord& airspace : airspaces) {
    bytes += airspace.segments.size() * sizeof(AirspaceSegment);
  }
  return bytes;
}

// A list that the document still shows is counted too: it costs a little room for steps, and saves
// knowing the document here.
size_t Bytes(const HistoryStep& step) {
  size_t bytes = 0;
  // Null for the first list of its kind: nothing stood there before.
  if (step.other.flight != nullptr) bytes += Bytes(*step.other.flight);
  if (step.other.waypoints != nullptr) bytes += Bytes(*step.other.waypoints);
  if (step.other.airspaces != nullptr) bytes += Bytes(*step.other.airspaces);
  return bytes;
}

}  // namespace

void AddStep(History& history, HistoryStep step) {
  // Redo would put a list back over one that it never followed.
  history.redo.clear();
  history.undo.push_back(std::move(step));
  size_t bytes = 0;
  for (const HistoryStep& kept : history.undo) bytes += Bytes(kept);
  // The oldest go first. The last change stays, however large: that is the one a person takes back.
  while (history.undo.size() > 1 &&
         (history.undo.size() > kMostSteps || bytes > kMostHistoryBytes)) {
    bytes -= Bytes(history.undo.front());
    history.undo.pop_front();
  }
}

}  // namespace skyhaul
