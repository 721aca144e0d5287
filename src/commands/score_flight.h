#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "commands/session.h"
#include "core/operation.h"
#include "report/score.h"

namespace skyhaul {

struct ScoreFlightRequest {
  std::string path;              // empty: the document's flight
  std::optional<int32_t> gap_m;  // 0: no closed tasks; empty: what the settings say
  std::optional<bool> fai_rule;  // the same
  bool strict = false;           // a damaged file is refused, not repaired
  bool exact = false;            // search every fix, for a minute at most
};

struct ScoreFlightResult {
  bool done = false;
  FlightScore score;
  std::shared_ptr<const Flight> flight;  // whose points the score's indices mean
  uint32_t generation = 0;               // of the document's flight, when it was scored
};

// Computes a flight's greatest distances. The operation can stop the search, which is a failure
// unless an exact search has results to show; its shell, when it has one, gets the search's
// progress. Messages about failures go to the session's shell.
ScoreFlightResult ScoreFlight(const Session& session, const ScoreFlightRequest& request,
                              const Operation& operation);

}  // namespace skyhaul
