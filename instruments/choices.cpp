#include "instruments/choices.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <span>
#include <string_view>
#include <utility>

#include "core/text/printable.h"
#include "instruments/families.h"
#include "instruments/manner_options.h"

namespace skyhaul {

namespace {

constexpr int kUsageError = 2;

bool AllOf(const std::string& text, size_t longest, std::string_view allowed) {
  return text.size() <= longest && text.find_first_not_of(allowed) == std::string::npos;
}

bool SetModel(Choices& choices, const std::string& value) {
  // Stored before it is checked: a refusal ends the program, and nothing reads it.
  choices.model = value;
  return std::find(std::begin(flytec_simulator::kDeviceNames),
                   std::end(flytec_simulator::kDeviceNames),
                   value) != std::end(flytec_simulator::kDeviceNames);
}

bool SetPilot(Choices& choices, const std::string& value) {
  choices.pilot = value;
  // A comma would end the field, '$' and '*' would end the sentence.
  return value.size() <= flytec_simulator::kPilotWidth &&
         std::all_of(value.begin(), value.end(), [](char c) {
           return c >= ' ' && c <= '~' && c != ',' && c != '$' && c != '*';
         });
}

bool SetSerial(Choices& choices, const std::string& value) {
  choices.serial = value;
  return !value.empty() && AllOf(value, flytec_simulator::kSerialWidth, "0123456789");
}

bool SetSoftware(Choices& choices, const std::string& value) {
  choices.software = value;
  // "3.30"; the width is that of the field in the instrument's sentence.
  return !value.empty() && AllOf(value, flytec_simulator::kSoftwareWidth, "0123456789.");
}

bool AddFlightFile(Choices& choices, const std::string& value) {
  choices.flight_files.push_back(value);
  return !value.empty();
}

bool SetFlights(Choices& choices, const std::string& value) {
  return IsNumber(value, flytec_simulator::kMaxFlights, choices.generated_flights);
}

bool SetWaypoints(Choices& choices, const std::string& value) {
  return IsNumber(value, flytec_simulator::kMaxWaypoints, choices.generated_waypoints);
}

bool SetRefusal(Choices& choices, const std::string& value) {
  // The words of --refuse, which a person need not look up as error numbers.
  constexpr std::pair<std::string_view, flytec_simulator::Refusal> kRefusals[] = {
      {"plausibility", flytec_simulator::Refusal::kPlausibility},
      {"memory", flytec_simulator::Refusal::kMemory},
      {"protected", flytec_simulator::Refusal::kProtected},
      {"syntax", flytec_simulator::Refusal::kSyntax},
      {"silent", flytec_simulator::Refusal::kSilent},
  };
  for (const auto& [name, refusal] : kRefusals) {
    if (value != name) continue;
    choices.refusal = refusal;
    return true;
  }
  return false;
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
  // 0 turns pacing off.
  constexpr uint32_t kFastest = 4'000'000;
  return IsNumber(value, kFastest, choices.baud) && (choices.baud == 0 || choices.baud >= 300);
}

constexpr Option kOptions[] = {
    {"--model", "a model's name (see --help)", SetModel},
    {"--pilot", "up to 17 printable characters other than , $ *", SetPilot},
    {"--serial", "up to 5 digits", SetSerial},
    {"--software", "up to 4 digits and dots", SetSoftware},
    {"--flight", "a file's name", AddFlightFile},
    {"--flights", "a number from 0 to 99", SetFlights},
    {"--waypoints", "a number from 0 to 200", SetWaypoints},
    {"--refuse", "plausibility, memory, protected, syntax or silent", SetRefusal},
    {"--link", "a path", SetLink},
    {"--log", "a file's name", SetLog},
    {"--baud", "0 or a number from 300 to 4000000", SetBaud},
};

constexpr std::string_view kSynopsis =
    "Usage: skyhaul-instrument FAMILY [OPTION]...\n"
    "       skyhaul-instrument replay FILE [--at-once] [--link PATH] [--log FILE]\n"
    "       skyhaul-instrument anonymise FILE OUT\n"
    "Puts a simulated instrument behind a pseudo-terminal, prints the terminal's path and\n"
    "answers until it is interrupted.\n"
    "\n"
    "Families:\n";

constexpr std::string_view kOptionsHelp =
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
    "  --waypoints N     N generated waypoints in its memory, up to 200 (default 0)\n"
    "  --refuse HOW      refuse every upload: plausibility, memory, protected, syntax or silent;\n"
    "                    a refused waypoint is just not kept\n"
    "  --link PATH       keep a symbolic link to the terminal\n"
    "  --log FILE        append the conversation to a file\n"
    "  --baud RATE       speed of the line in bits per second; 0 is as fast as it goes\n"
    "                    (default 57600)\n"
    "  --help            show this text\n";

const Option* FindOption(const std::string& name) {
  for (const std::span<const Option> options :
       {std::span<const Option>(kOptions), MannerOptions()}) {
    const auto found = std::find_if(options.begin(), options.end(),
                                    [&](const Option& known) { return known.name == name; });
    if (found != options.end()) return &*found;
  }
  return nullptr;
}

}  // namespace

bool IsNumber(const std::string& text, uint32_t maximum, uint32_t& number) {
  const char* end = text.data() + text.size();
  // Without a sign: from_chars() refuses one for unsigned numbers.
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  return error == std::errc() && stop == end && number <= maximum;
}

std::string InstrumentUsage() {
  constexpr size_t kHelpColumn = 20;
  std::string usage(kSynopsis);
  for (const SimulatedFamily& family : SimulatedFamilies()) {
    //   flytec            Flytec and Brauniger
    std::string line = "  " + std::string(family.name);
    line.resize(std::max(line.size() + 1, kHelpColumn), ' ');
    usage += line + std::string(family.maker) + '\n';
  }
  usage += kOptionsHelp;
  return usage + std::string(MannersHelp());
}

int Refuse(const std::string& message) {
  // Arguments and paths are echoed, and may hold what steers a terminal.
  (void)std::fprintf(stderr, "skyhaul-instrument: %s\n", PrintableLines(message).c_str());
  return kUsageError;
}

int ParseCommandLine(const std::vector<std::string>& arguments, Choices& choices) {
  for (size_t i = 0; i < arguments.size(); ++i) {
    const std::string& argument = arguments[i];
    if (argument == "--help" || argument == "-h") {
      // Help ends the reading: what follows need not be right.
      choices.help = true;
      return 0;
    }
    // The one word without a dash is the family, before or after the options.
    if (!argument.starts_with("-")) {
      if (!choices.family.empty()) return Refuse("Only one family can be given: " + argument);
      choices.family = argument;
      continue;
    }
    const Option* option = FindOption(argument);
    if (option == nullptr) return Refuse("Unknown option " + argument);
    if (option->expected == nullptr) {
      (void)option->set(choices, "");
      continue;
    }
    // The last argument has none to follow it; the message then names no wrong value.
    const bool has_value = i + 1 < arguments.size();
    if (!has_value || !option->set(choices, arguments[++i])) {
      return Refuse(argument + " needs " + option->expected +
                    (has_value ? ", not \"" + arguments[i] + "\"" : ""));
    }
  }
  return 0;
}

}  // namespace skyhaul
