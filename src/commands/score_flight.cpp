#include "commands/score_flight.h"

#include <utility>

#include "analysis/optimise.h"
#include "analysis/optimise_exact.h"
#include "commands/read_options.h"
#include "files/igc_files.h"

namespace skyhaul {

namespace {

constexpr const char* kTitle = "Distances";
// A minute: longer than nearly all flights need, and as long as a person waits.
constexpr uint32_t kExactBudget_ms = 60'000;

// The flight to score. Null after a message when there is none.
std::shared_ptr<const Flight> FlightToScore(const Session& session,
                                            const ScoreFlightRequest& request) {
  const Operation operation = {.shell = session.shell};
  if (request.path.empty()) {
    if (session.document->lists.flight == nullptr) {
      ShowMessage(operation, "There is no flight: open or download one first", kTitle);
    }
    // Shared, not copied: the list is immutable, so the search may keep it while the document goes
    // on.
    return session.document->lists.flight;
  }
  auto flight = std::make_shared<Flight>();
  FileContents contents;
  const igc::ReadOptions options = ReadOptionsOf(session, request.strict);
  // Not into the document: a score changes nothing that a person works on.
  if (LoadIgcFile(operation, request.path, options, contents) < 0) return nullptr;
  flight->points = std::move(contents.points);
  return flight;
}

}  // namespace

ScoreFlightResult ScoreFlight(const Session& session, const ScoreFlightRequest& request,
                              const Operation& operation) {
  ScoreFlightResult result;
  result.flight = FlightToScore(session, request);
  if (result.flight == nullptr) return result;
  const auto& points = result.flight->points;
  FlightScore& score = result.score;
  score.file = request.path;
  score.fixes = points.size();
  score.settings = {.gap_m = request.gap_m.value_or(session.defaults->loop_gap_m),
                    .fai_rule = request.fai_rule.value_or(session.defaults->fai_rule)};
  if (request.path.empty()) {
    score.file = session.document->State(ListKind::kFlight).source.name;
    // Lets the receiver see whether the document has another flight by the time the result arrives.
    result.generation = session.document->State(ListKind::kFlight).generation;
  }
  const int failed =
      request.exact
          ? OptimiseTrackExact(points, score.settings, kExactBudget_ms, score.result, &operation)
          : OptimiseTrack(points, score.settings, score.result, &operation);
  result.done = failed == 0;
  if (result.done) return result;
  // An exact search fails on more than 2^26 fixes only; the fast one when it is stopped or cannot
  // allocate its matrix.
  const char* reason = operation.aborted ? ": stopped"
                       : request.exact   ? ": too many fixes"
                                         : ": not enough memory";
  ShowMessage(Operation{.shell = session.shell}, score.file + reason, kTitle);
  return result;
}

}  // namespace skyhaul
