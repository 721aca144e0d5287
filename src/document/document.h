#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "core/airspace.h"
#include "core/file_waypoint.h"
#include "core/flight.h"
#include "document/history.h"

namespace skyhaul {

// Which instrument something came from, in the texts that drivers fill.
struct InstrumentIdentity {
  std::string description;  // one line for a person; empty: no instrument has answered
  std::string owner;        // model and pilot
  std::string pilot_name;
};

// What the program works on: the current flight, waypoint list and airspace list. There is one, and
// only the thread that owns it reads or changes it. Each list is immutable: a change makes a new
// one and swaps the pointer, so that undo, a writer or a search on another thread can keep the old.
struct Document {
  Lists lists;  // null pointers: nothing has been read yet
  std::vector<uint32_t>
      selection;                // indices of selected points of the flight, ascending; empty: all
  InstrumentIdentity identity;  // of the last instrument that answered
  std::array<ListState, kListCount> states;
  History history;

  const ListState& State(ListKind kind) const { return states[static_cast<size_t>(kind)]; }
};

// Each replaces one list as a whole, as one step of undo with this title ("Download of a flight").
// The list gets a new generation, which makes what was computed from the old one stale. A new
// flight resets the selection. modified: no file has it yet.
void ReplaceFlight(Document& document, Flight flight, Source source, bool modified,
                   std::string title);
void ReplaceWaypoints(Document& document, std::vector<FileWaypoint> waypoints, Source source,
                      bool modified, std::string title);
void ReplaceAirspaces(Document& document, std::vector<CtrRecord> airspaces, Source source,
                      bool modified, std::string title);

// Call when a file has the list as it is now. What undo and redo can bring back counts as modified
// from then on, because the file has something else.
void MarkSaved(Document& document, ListKind kind);

// The title of the step that Undo() or Redo() would take; empty when there is none.
std::string UndoTitle(const Document& document);
std::string RedoTitle(const Document& document);

// Takes back the last change, or makes the last one taken back again. The list gets a new
// generation. Do nothing when there is no such step.
void Undo(Document& document);
void Redo(Document& document);

// Restricts what writers export of the flight to these points. Indices beyond the flight are
// dropped; the order does not matter.
void SelectPoints(Document& document, std::vector<uint32_t> selection);

}  // namespace skyhaul
