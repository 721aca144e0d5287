// skyhaul-instrument: a simulated instrument behind a pseudo-terminal, for trying the program
// without an instrument at hand and for reproducing what a pilot saw with one.

#include <algorithm>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include "core/time_scale.h"
#include "formats/igc/write_igc.h"
#include "instruments/choices.h"
#include "instruments/conversation_log.h"
#include "instruments/flight_generator.h"
#include "instruments/flytec/flytec_simulator.h"
#include "instruments/pty_host.h"
#include "platform/file.h"

namespace skyhaul {

namespace {

constexpr uint32_t kDefaultFlights = 3;

// --- Flights -------------------------------------------------------------------------------------

// The n-th last of a row of flights on successive days, the last one on 2026-05-24.
flytec_simulator::StoredFlight MakeFlight(uint32_t n, const std::string& pilot) {
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
  return flytec_simulator::FlightFromIgc(text);
}

// Returns 0, or the exit status after a message.
int LoadFlights(const Choices& choices, std::vector<flytec_simulator::StoredFlight>& flights) {
  for (const std::string& path : choices.flight_files) {
    std::string text;
    const FileResult result = ReadWholeFile(path, text);
    if (result.problem != FileProblem::kNone) {
      return Refuse("Could not read " + path + ": " + result.reason);
    }
    flights.push_back(flytec_simulator::FlightFromIgc(text));
  }
  const uint32_t unset = choices.flight_files.empty() ? kDefaultFlights : 0;
  const uint32_t count =
      choices.generated_flights == kNotChosen ? unset : choices.generated_flights;
  if (flights.size() + count > flytec_simulator::kMaxFlights) return Refuse("More than 99 flights");
  for (uint32_t n = 0; n < count; ++n) flights.push_back(MakeFlight(n, choices.pilot));
  flytec_simulator::SortNewestFirst(flights);
  return 0;
}

// --- Running -------------------------------------------------------------------------------------

void WriteLogLine(void* context, std::string_view line) {
  auto* file = static_cast<std::FILE*>(context);
  (void)std::fwrite(line.data(), 1, line.size(), file);
  (void)std::fflush(file);
}

void TellLog(void* context, std::string_view text, uint64_t now_ns) {
  LogRemark(*static_cast<ConversationLog*>(context), text, now_ns);
}

void PrintPath(void*, const std::string& terminal_path) {
  (void)std::printf("%s\n", terminal_path.c_str());
  (void)std::fflush(stdout);
}

int Run(SimulatedInstrument& instrument, const Choices& choices, ConversationLog* log) {
  TerminalOptions options{
      .link_path = choices.link_path, .log = log, .stop = &StopOnSignals(), .on_ready = PrintPath};
  std::string problem;
  if (RunOnTerminal(instrument, options, problem) == 0) return 0;
  (void)std::fprintf(stderr, "skyhaul-instrument: %s\n", problem.c_str());
  return 1;
}

int RunFlytec(const Choices& choices, ConversationLog* log) {
  flytec_simulator::Simulator simulator{.device_name = choices.model,
                                        .pilot_name = choices.pilot,
                                        .serial = choices.serial,
                                        .software = choices.software,
                                        .refusal = choices.refusal};
  if (log != nullptr) {
    simulator.log = TellLog;
    simulator.log_context = log;
  }
  if (const int status = LoadFlights(choices, simulator.flights); status != 0) return status;
  for (uint32_t n = 0; n < choices.generated_waypoints; ++n) {
    simulator.waypoints.push_back(flytec_simulator::GenerateWaypoint(n));
  }
  SimulatedInstrument instrument = flytec_simulator::MakeInstrument(simulator, choices.baud);
  return Run(instrument, choices, log);
}

struct Family {
  std::string_view name;
  int (*run)(const Choices& choices, ConversationLog* log);
};

constexpr Family kFamilies[] = {
    {"flytec", RunFlytec},
};

int RunChoices(const Choices& choices) {
  if (choices.family.empty()) return Refuse("Which family? See --help");
  const auto* family =
      std::find_if(std::begin(kFamilies), std::end(kFamilies),
                   [&](const Family& candidate) { return candidate.name == choices.family; });
  if (family == std::end(kFamilies)) return Refuse("Unknown family " + choices.family);
  if (choices.log_path.empty()) return family->run(choices, nullptr);
  std::FILE* file = std::fopen(choices.log_path.c_str(), "wb");
  if (file == nullptr) return Refuse("Could not write " + choices.log_path);
  ConversationLog log{.write = WriteLogLine, .context = file};
  const int status = family->run(choices, &log);
  (void)std::fclose(file);
  return status;
}

}  // namespace

}  // namespace skyhaul

int main(int argc, char** argv) {
  skyhaul::Choices choices;
  const std::vector<std::string> arguments(argv + std::min(argc, 1), argv + argc);
  if (const int status = skyhaul::ParseCommandLine(arguments, choices); status != 0) return status;
  if (choices.help) {
    (void)std::fputs(skyhaul::kInstrumentUsage, stdout);
    return 0;
  }
  return skyhaul::RunChoices(choices);
}
