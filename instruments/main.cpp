// skyhaul-instrument: a simulated instrument behind a pseudo-terminal, for trying the program
// without an instrument at hand and for reproducing what a pilot saw with one.

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include "core/time_scale.h"
#include "formats/igc/write_igc.h"
#include "instruments/conversation_log.h"
#include "instruments/flight_generator.h"
#include "instruments/flytec/flytec_simulator.h"
#include "instruments/pty_host.h"
#include "platform/file.h"

namespace skyhaul {

namespace {

constexpr int kUsageError = 2;
constexpr uint32_t kUnset = UINT32_MAX;
constexpr uint32_t kDefaultFlights = 3;

constexpr const char* kUsage =
    "Usage: skyhaul-instrument FAMILY [OPTION]...\n"
    "Puts a simulated instrument behind a pseudo-terminal, prints the terminal's path and\n"
    "answers until it is interrupted.\n"
    "\n"
    "Families:\n"
    "  flytec            Flytec and Brauniger\n"
    "\n"
    "Options:\n"
    "  --model NAME      what the instrument calls itself: 5020, 5030, 6020, 6030, COMPEO,\n"
    "                    COMPEO+, COMPETINO, COMPETINO+ or GALILEO (default 6030)\n"
    "  --pilot NAME      pilot's name, up to 17 characters (default \"Simulated Pilot\")\n"
    "  --serial NUMBER   serial number, up to 5 digits (default 01001)\n"
    "  --software X.YY   software version, up to 4 characters (default 3.30)\n"
    "  --flight FILE     an IGC file in its memory; may be given several times\n"
    "  --flights N       N generated flights in its memory, up to 99 (default 3, or none when\n"
    "                    --flight is given)\n"
    "  --link PATH       keep a symbolic link to the terminal\n"
    "  --log FILE        write the conversation to a file\n"
    "  --baud RATE       speed of the line in bits per second; 0 is as fast as it goes\n"
    "                    (default 57600)\n"
    "  --help            show this text\n";

struct Choices {
  std::string family;
  std::string model = "6030";
  std::string pilot = "Simulated Pilot";
  std::string serial = "01001";
  std::string software = "3.30";
  std::vector<std::string> flight_files;
  uint32_t generated_flights = kUnset;
  std::string link_path;
  std::string log_path;
  uint32_t baud = 57600;
  bool help = false;
};

int Refuse(const std::string& message) {
  (void)std::fprintf(stderr, "skyhaul-instrument: %s\n", message.c_str());
  return kUsageError;
}

// --- The command line ----------------------------------------------------------------------------

bool IsNumber(const std::string& text, uint32_t maximum, uint32_t& number) {
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  return error == std::errc() && stop == end && number <= maximum;
}

bool AllOf(const std::string& text, size_t longest, std::string_view allowed) {
  return text.size() <= longest && text.find_first_not_of(allowed) == std::string::npos;
}

bool SetModel(Choices& choices, const std::string& value) {
  choices.model = value;
  return std::find(std::begin(kFlytecDeviceNames), std::end(kFlytecDeviceNames), value) !=
         std::end(kFlytecDeviceNames);
}

bool SetPilot(Choices& choices, const std::string& value) {
  choices.pilot = value;
  // A comma would end the field, '$' and '*' would end the sentence.
  return value.size() <= kFlytecPilotWidth && std::all_of(value.begin(), value.end(), [](char c) {
           return c >= ' ' && c <= '~' && c != ',' && c != '$' && c != '*';
         });
}

bool SetSerial(Choices& choices, const std::string& value) {
  choices.serial = value;
  return !value.empty() && AllOf(value, kFlytecSerialWidth, "0123456789");
}

bool SetSoftware(Choices& choices, const std::string& value) {
  choices.software = value;
  return !value.empty() && AllOf(value, kFlytecSoftwareWidth, "0123456789.");
}

bool AddFlightFile(Choices& choices, const std::string& value) {
  choices.flight_files.push_back(value);
  return !value.empty();
}

bool SetFlights(Choices& choices, const std::string& value) {
  return IsNumber(value, kFlytecMaxFlights, choices.generated_flights);
}

bool SetLink(Choices& choices, const std::string& value) {
  choices.link_path = value;
  return !value.empty();
}

bool SetLog(Choices& choices, const std::string& value) {
  choices.log_path = value;
  return !value.empty();
}

bool SetBaud(Choices& choices, const std::string& value) {
  constexpr uint32_t kFastest = 4'000'000;
  return IsNumber(value, kFastest, choices.baud) && (choices.baud == 0 || choices.baud >= 300);
}

struct Option {
  std::string_view name;
  const char* expected;
  bool (*set)(Choices& choices, const std::string& value);  // false when the value will not do
};

constexpr Option kOptions[] = {
    {"--model", "a model's name (see --help)", SetModel},
    {"--pilot", "up to 17 printable characters other than , $ *", SetPilot},
    {"--serial", "up to 5 digits", SetSerial},
    {"--software", "up to 4 digits and dots", SetSoftware},
    {"--flight", "a file's name", AddFlightFile},
    {"--flights", "a number from 0 to 99", SetFlights},
    {"--link", "a path", SetLink},
    {"--log", "a file's name", SetLog},
    {"--baud", "0 or a number from 300 to 4000000", SetBaud},
};

// Returns 0, or the exit status after a message.
int ParseCommandLine(const std::vector<std::string>& arguments, Choices& choices) {
  for (size_t i = 0; i < arguments.size(); ++i) {
    const std::string& argument = arguments[i];
    if (argument == "--help" || argument == "-h") {
      choices.help = true;
      return 0;
    }
    if (!argument.starts_with("-")) {
      if (!choices.family.empty()) return Refuse("Only one family can be given: " + argument);
      choices.family = argument;
      continue;
    }
    const auto* option =
        std::find_if(std::begin(kOptions), std::end(kOptions),
                     [&](const Option& candidate) { return candidate.name == argument; });
    if (option == std::end(kOptions)) return Refuse("Unknown option " + argument);
    const bool has_value = i + 1 < arguments.size();
    if (!has_value || !option->set(choices, arguments[++i])) {
      return Refuse(argument + " needs " + option->expected +
                    (has_value ? ", not \"" + arguments[i] + "\"" : ""));
    }
  }
  return 0;
}

// --- Flights -------------------------------------------------------------------------------------

// The n-th last of a row of flights on successive days, the last one on 2026-05-24.
FlytecFlight MakeFlight(uint32_t n, const std::string& pilot) {
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
  IgcHeaderTexts header;
  header.pilot = pilot;
  header.glider_type = "Simulated glider";
  IgcWriteOptions options;
  options.sign = true;
  options.may_be_signed = true;
  options.serial = "000";
  options.free_text = "Simulated instrument";
  options.download_time = CalendarFromTime(flight.points.back().time);
  std::string text;
  (void)WriteIgc(flight.points, header, options, text);
  return FlightFromIgc(text);
}

// Returns 0, or the exit status after a message.
int LoadFlights(const Choices& choices, std::vector<FlytecFlight>& flights) {
  for (const std::string& path : choices.flight_files) {
    std::string text;
    const FileResult result = ReadWholeFile(path, text);
    if (result.problem != FileProblem::kNone) {
      return Refuse("Could not read " + path + ": " + result.reason);
    }
    flights.push_back(FlightFromIgc(text));
  }
  const uint32_t unset = choices.flight_files.empty() ? kDefaultFlights : 0;
  const uint32_t count = choices.generated_flights == kUnset ? unset : choices.generated_flights;
  if (flights.size() + count > kFlytecMaxFlights) return Refuse("More than 99 flights");
  for (uint32_t n = 0; n < count; ++n) flights.push_back(MakeFlight(n, choices.pilot));
  SortNewestFirst(flights);
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
  FlytecSimulator simulator{.device_name = choices.model,
                            .pilot_name = choices.pilot,
                            .serial = choices.serial,
                            .software = choices.software};
  if (log != nullptr) {
    simulator.log = TellLog;
    simulator.log_context = log;
  }
  if (const int status = LoadFlights(choices, simulator.flights); status != 0) return status;
  SimulatedInstrument instrument = MakeFlytecInstrument(simulator, choices.baud);
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
    (void)std::fputs(skyhaul::kUsage, stdout);
    return 0;
  }
  return skyhaul::RunChoices(choices);
}
