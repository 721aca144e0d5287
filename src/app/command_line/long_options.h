#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <limits>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace skyhaul {

// What the program does when it is asked with a long option; it needs neither window nor instrument
// for them.
enum class LongCommand {
  kHelp,
  kVersion,
  kPorts,
  kInfo,
  kCheck,
  kScore,
  kConvert,
  kRepair,
  kSettings,
  kSet
};

inline constexpr size_t kAnyNumberOfFiles = std::numeric_limits<size_t>::max();

// Options that say how, beside the one that says what to do.
enum class SideOption : uint32_t { kJson, kGap, kFaiRule, kExact, kFormat, kOverwrite, kStrict };

struct SideOptionName {
  SideOption option;
  std::string_view name;
  bool takes_value = false;  // the next argument
};
inline constexpr SideOptionName kSideOptions[] = {
    {.option = SideOption::kJson, .name = "--json"},
    {.option = SideOption::kGap, .name = "--gap", .takes_value = true},
    {.option = SideOption::kFaiRule, .name = "--fai-rule", .takes_value = true},
    {.option = SideOption::kExact, .name = "--exact"},
    {.option = SideOption::kFormat, .name = "--format", .takes_value = true},
    {.option = SideOption::kOverwrite, .name = "--overwrite"},
    {.option = SideOption::kStrict, .name = "--strict"},
};
inline constexpr size_t kSideOptionCount = std::size(kSideOptions);

// A set of side options.
constexpr uint32_t Sides() {
  return 0;
}
template <typename... More>
constexpr uint32_t Sides(SideOption option, More... more) {
  return (1U << static_cast<uint32_t>(option)) | Sides(more...);
}

struct LongOption {
  LongCommand command;
  std::string_view name;
  std::string_view argument_help = {};  // what the help shows after the name
  std::string_view help = {};           // one line without a full stop
  size_t min_files = 0;
  size_t max_files = 0;
  std::string_view files_are = "file name";  // what the message about a missing one calls it
  uint32_t sides = 0;                        // the side options that go with it
};

// All long options that say what to do, in the order in which the help shows them. A further one is
// one more row here and what it does where the program dispatches on LongCommand.
inline constexpr LongOption kLongOptions[] = {
    {.command = LongCommand::kHelp, .name = "--help", .help = "print this text"},
    {.command = LongCommand::kVersion, .name = "--version", .help = "print the version"},
    {.command = LongCommand::kPorts, .name = "--ports", .help = "list the serial ports"},
    {.command = LongCommand::kInfo,
     .name = "--info",
     .argument_help = "FILE... [--strict] [--json]",
     .help = "sum up flight, waypoint and airspace files; damaged flights are repaired for it "
             "unless --strict is given",
     .min_files = 1,
     .max_files = kAnyNumberOfFiles,
     .sides = Sides(SideOption::kJson, SideOption::kStrict)},
    {.command = LongCommand::kCheck,
     .name = "--check",
     .argument_help = "FILE...",
     .help = "print each file's security check",
     .min_files = 1,
     .max_files = kAnyNumberOfFiles},
    {.command = LongCommand::kScore,
     .name = "--score",
     .argument_help = "FILE... [--gap M] [--fai-rule on|off] [--exact] [--strict] [--json]",
     .help = "print the greatest distances, out-and-return and triangles of flights; without --gap "
             "(0: no closed tasks) and --fai-rule the settings hold, at first 800 m and on",
     .min_files = 1,
     .max_files = kAnyNumberOfFiles,
     .sides = Sides(SideOption::kJson, SideOption::kGap, SideOption::kFaiRule, SideOption::kExact,
                    SideOption::kStrict)},
    {.command = LongCommand::kConvert,
     .name = "--convert",
     .argument_help = "IN OUT [--format NAME] [--overwrite] [--strict]",
     .help = "convert a waypoint, airspace or track file into another format; without a name the "
             "extension of OUT tells which",
     .min_files = 2,
     .max_files = 2,
     .sides = Sides(SideOption::kFormat, SideOption::kOverwrite, SideOption::kStrict)},
    {.command = LongCommand::kRepair,
     .name = "--repair",
     .argument_help = "FILE OUT [--overwrite]",
     .help = "write the good lines of a damaged IGC file, and say what was left out",
     .min_files = 2,
     .max_files = 2,
     .sides = Sides(SideOption::kOverwrite)},
    {.command = LongCommand::kSettings,
     .name = "--settings",
     .argument_help = "[--json]",
     .help = "print all settings and which of them differ from their defaults",
     .sides = Sides(SideOption::kJson)},
    {.command = LongCommand::kSet,
     .name = "--set",
     .argument_help = "NAME=VALUE...",
     .help = "change settings, all of them or none; a password's NAME alone reads it from standard "
             "input",
     .min_files = 1,
     .max_files = kAnyNumberOfFiles,
     .files_are = "NAME=VALUE"},
};

struct LongOptions {
  LongCommand command = LongCommand::kHelp;
  std::vector<std::string> files;                    // of kSet its assignments
  uint32_t given = 0;                                // the side options that were given
  std::array<std::string, kSideOptionCount> values;  // of those that take one
};

inline bool IsGiven(const LongOptions& options, SideOption option) {
  return (options.given & Sides(option)) != 0;
}

// The value of a side option; empty when it was not given.
inline const std::string& ValueOf(const LongOptions& options, SideOption option) {
  return options.values[static_cast<size_t>(option)];
}

// Goes with every command, and beside switches too: a file that takes the whole conversation with
// the instrument.
inline constexpr std::string_view kTraceOption = "--trace";

// Goes with /WR_CTR alone: how far before an airspace the instrument warns.
inline constexpr std::string_view kWarningOption = "--warning";
inline constexpr char kWarningMisplaced[] = "\"--warning\" goes with /WR_CTR only";

// Takes one of these two and its value out of the arguments, wherever they stand before a "--"; of
// several the last counts. value stays as it is when there is none. Returns 0, or -1 with one line
// that says what is wrong.
int TakeOption(std::vector<std::string>& arguments, std::string_view name,
               std::optional<std::string>& value, std::string& message);

// True when the program was called with long options: the first argument begins with two dashes.
// Those that go with switches too have been taken out.
bool HasLongOptions(std::span<const std::string> arguments);

// Parses long options and files, in any order. After "--" every argument is a file. Returns 0, or
// -1 with one line that says what is wrong.
int ParseLongOptions(std::span<const std::string> arguments, LongOptions& options,
                     std::string& message);

}  // namespace skyhaul
