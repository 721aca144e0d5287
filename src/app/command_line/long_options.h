#pragma once

#include <cstddef>
#include <limits>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace skyhaul {

// What the program does when it is asked with a long option; it needs neither window nor instrument
// for them.
enum class LongCommand { kHelp, kVersion, kPorts, kInfo, kCheck };

inline constexpr size_t kAnyNumberOfFiles = std::numeric_limits<size_t>::max();
inline constexpr std::string_view kJsonOption = "--json";

struct LongOption {
  LongCommand command;
  std::string_view name;
  std::string_view argument_help = {};  // what the help shows after the name
  std::string_view help = {};           // one line without a full stop
  size_t min_files = 0;
  size_t max_files = 0;
  bool allows_json = false;
};

// All long options but kJsonOption, in the order in which the help shows them. A further one is one
// more row here and what it does where the program dispatches on LongCommand.
inline constexpr LongOption kLongOptions[] = {
    {.command = LongCommand::kHelp, .name = "--help", .help = "print this text"},
    {.command = LongCommand::kVersion, .name = "--version", .help = "print the version"},
    {.command = LongCommand::kPorts, .name = "--ports", .help = "list the serial ports"},
    {.command = LongCommand::kInfo,
     .name = "--info",
     .argument_help = "FILE... [--json]",
     .help = "print what flight files hold",
     .min_files = 1,
     .max_files = kAnyNumberOfFiles,
     .allows_json = true},
    {.command = LongCommand::kCheck,
     .name = "--check",
     .argument_help = "FILE...",
     .help = "print each file's security check",
     .min_files = 1,
     .max_files = kAnyNumberOfFiles},
};

struct LongOptions {
  LongCommand command = LongCommand::kHelp;
  std::vector<std::string> files;
  bool json = false;
};

// True when the program was called with long options: the first argument begins with two dashes.
bool HasLongOptions(std::span<const std::string> arguments);

// Parses long options and files, in any order. After "--" every argument is a file. Returns 0, or
// -1 with one line that says what is wrong.
int ParseLongOptions(std::span<const std::string> arguments, LongOptions& options,
                     std::string& message);

}  // namespace skyhaul
