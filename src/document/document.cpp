#include "document/document.h"

#include <algorithm>
#include <utility>

namespace skyhaul {

namespace {

ListState& StateOf(Document& document, ListKind kind) {
  return document.states[static_cast<size_t>(kind)];
}

void SwapList(Lists& a, Lists& b, ListKind kind) {
  switch (kind) {
    case ListKind::kFlight:
      return a.flight.swap(b.flight);
    case ListKind::kWaypoints:
      return a.waypoints.swap(b.waypoints);
    case ListKind::kAirspaces:
      return a.airspaces.swap(b.airspaces);
  }
}

// Exchanges what the document has and what the step holds. Doing it twice changes nothing but the
// generation, so undo and redo need no inverse operations.
void Exchange(Document& document, HistoryStep& step) {
  ListState& state = StateOf(document, step.kind);
  SwapList(document.lists, step.other, step.kind);
  std::swap(state.source, step.source);
  std::swap(state.modified, step.modified);
  // Counts on with undo as well: a result of the list before the undo is as stale as any.
  ++state.generation;
  // The indices meant fixes of the other flight.
  if (step.kind == ListKind::kFlight) document.selection.clear();
}

void Replace(Document& document, HistoryStep step) {
  // After the exchange the step holds the old list, which is just what undo needs.
  Exchange(document, step);
  AddStep(document.history, std::move(step));
}

std::string LastTitle(const std::deque<HistoryStep>& steps) {
  return steps.empty() ? "" : steps.back().title;
}

void MoveLast(Document& document, std::deque<HistoryStep>& from, std::deque<HistoryStep>& to) {
  if (from.empty()) return;
  // Taken off before the exchange, so that a step stands in one of the two lists at most.
  HistoryStep step = std::move(from.back());
  from.pop_back();
  Exchange(document, step);
  to.push_back(std::move(step));
}

}  // namespace

void ReplaceFlight(Document& document, Flight flight, Source source, bool modified,
                   std::string title) {
  Replace(document, {.title = std::move(title),
                     .kind = ListKind::kFlight,
                     .other = {.flight = std::make_shared<const Flight>(std::move(flight))},
                     .source = std::move(source),
                     .modified = modified});
}

void ReplaceWaypoints(Document& document, std::vector<FileWaypoint> waypoints, Source source,
                      bool modified, std::string title) {
  using List = const std::vector<FileWaypoint>;
  Replace(document, {.title = std::move(title),
                     .kind = ListKind::kWaypoints,
                     .other = {.waypoints = std::make_shared<List>(std::move(waypoints))},
                     .source = std::move(source),
                     .modified = modified});
}

void ReplaceAirspaces(Document& document, std::vector<CtrRecord> airspaces, Source source,
                      bool modified, std::string title) {
  using List = const std::vector<CtrRecord>;
  Replace(document, {.title = std::move(title),
                     .kind = ListKind::kAirspaces,
                     .other = {.airspaces = std::make_shared<List>(std::move(airspaces))},
                     .source = std::move(source),
                     .modified = modified});
}

void MarkSaved(Document& document, ListKind kind) {
  // The file has what is shown now. Every other state of the list differs from it, on both sides.
  StateOf(document, kind).modified = false;
  for (std::deque<HistoryStep>* steps : {&document.history.undo, &document.history.redo}) {
    for (HistoryStep& step : *steps) {
      if (step.kind == kind) step.modified = true;
    }
  }
}

std::string UndoTitle(const Document& document) {
  return LastTitle(document.history.undo);
}

std::string RedoTitle(const Document& document) {
  return LastTitle(document.history.redo);
}

void Undo(Document& document) {
  MoveLast(document, document.history.undo, document.history.redo);
}

void Redo(Document& document) {
  MoveLast(document, document.history.redo, document.history.undo);
}

void SelectPoints(Document& document, std::vector<uint32_t> selection) {
  // A face may still show an older flight, so indices beyond this one's end are no mistake of its
  // own.
  const Flight* flight = document.lists.flight.get();
  const size_t points = flight == nullptr ? 0 : flight->points.size();
  std::sort(selection.begin(), selection.end());
  selection.erase(std::unique(selection.begin(), selection.end()), selection.end());
  std::erase_if(selection, [&](uint32_t index) { return index >= points; });
  document.selection = std::move(selection);
}

}  // namespace skyhaul
