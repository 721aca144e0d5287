#include "instruments/flytec/host.h"

#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "core/time_scale.h"
#include "formats/igc/write_igc.h"
#include "instruments/flight_generator.h"
#include "instruments/flytec/flytec_simulator.h"
#include "instruments/host.h"
#include "platform/file.h"

namespace skyhaul::flytec_simulator {

namespace {

constexpr uint32_t kDefaultFlights = 3;

// The n-th last of a row of flights on successive days, the last one on 2026-05-24.
StoredFlight MakeFlight(uint32_t n, const std::string& pilot) {
  struct Kind {
    double triangle_km;
    uint32_t interval_s;
  };
  constexpr Kind kKinds[] = {{40, 1}, {18, 2}, {25, 5}, {60, 10}, {8, 1}};
  const Kind& kind = kKinds[n % std::size(kKinds)];
  const uint32_t last_day = TimeFromCalendar({.year = 2026, .month = 5, .day = 24});
  const uint32_t time_of_day_s = 9 * 3600 + n * 1013 % 7200;
  const GeneratedFlight flight =
      GenerateFlight({.seed = n + 1,
                      .start_time = last_day - n * kSecondsPerDay + time_of_day_s,
                      .triangle_km = kind.triangle_km,
                      .interval_s = kind.interval_s});
  igc::HeaderTexts header;
  header.pilot = pilot;
  header.glider_type = "Simulated glider";
  igc::WriteOptions options;
  options.sign = true;
  options.may_be_signed = true;
  options.serial = "000";
  options.free_text = "Simulated instrument";
  options.download_time = CalendarFromTime(flight.points.back().time);
  std::string text;
  (void)igc::Write(flight.points, header, options, text);
  return FlightFromIgc(text);
}

// Returns 0, or the exit status after a message.
int LoadFlights(const Choices& choices, std::vector<StoredFlight>& flights) {
  for (const std::string& path : choices.flight_files) {
    std::string text;
    const FileResult result = ReadWholeFile(path, text);
    if (result.problem != FileProblem::kNone) {
      return Refuse("Could not read " + path + ": " + result.reason);
    }
    flights.push_back(FlightFromIgc(text));
  }
  const uint32_t unset = choices.flight_files.empty() ? kDefaultFlights : 0;
  const uint32_t count =
      choices.generated_flights == kNotChosen ? unset : choices.generated_flights;
  if (flights.size() + count > kMaxFlights) return Refuse("More than 99 flights");
  for (uint32_t n = 0; n < count; ++n) flights.push_back(MakeFlight(n, choices.pilot));
  SortNewestFirst(flights);
  return 0;
}

void WriteRemark(void* context, std::string_view text, uint64_t now_ns) {
  LogRemark(*static_cast<ConversationLog*>(context), text, now_ns);
}

}  // namespace

int Run(const Choices& choices, ConversationLog* log) {
  Simulator simulator{.device_name = choices.model,
                      .pilot_name = choices.pilot,
                      .serial = choices.serial,
                      .software = choices.software,
                      .refusal = choices.refusal,
                      .manners = choices.manners};
  if (log != nullptr) {
    simulator.log = WriteRemark;
    simulator.log_context = log;
  }
  if (const int status = LoadFlights(choices, simulator.flights); status != 0) return status;
  for (uint32_t n = 0; n < choices.generated_waypoints; ++n) {
    simulator.waypoints.push_back(GenerateWaypoint(n));
  }
  SimulatedInstrument instrument = MakeInstrument(simulator, choices.baud);
  return RunBehindTerminal(instrument, choices, log);
}

}  // namespace skyhaul::flytec_simulator
