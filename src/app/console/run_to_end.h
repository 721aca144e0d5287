#pragma once

#include <optional>
#include <utility>

#include "app/console/console_shell.h"

namespace skyhaul {

// Calls one of the commands that need an instrument and waits for its end, running on this thread
// what the job's thread hands over. While it waits the first interrupt of the person aborts the
// job. start(end) must lead to one call of end(result) on this thread.
//
//   const FlightListResult result = RunToEnd<FlightListResult>(
//       console, [&](auto end) { ReadFlightList(session, request, end); });
template <typename Result, typename Start>
Result RunToEnd(Console& console, Start start) {
  std::optional<Result> result;
  start([&](Result ended) { result = std::move(ended); });
  while (!result.has_value()) RunOneForOwner(console);
  StopWatching(console);
  return std::move(*result);
}

}  // namespace skyhaul
