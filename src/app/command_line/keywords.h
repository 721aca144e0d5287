#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "app/command_line/command_line_block.h"
#include "app/command_line/tokeniser.h"

namespace skyhaul {

// What the parser needs to know of the system and the settings that it runs with.
struct CommandLineHost {
  // True when a text is a device's own name, such as a path, and not a port number. Null: ports
  // have numbers only.
  bool (*is_port_name)(const std::string& text) = nullptr;
  bool has_notify_client = false;  // a client was set elsewhere, so /NOTIFY= need not be given
};

// A set of commands, a bit for the number of each.
using CommandSet = uint32_t;
inline constexpr CommandSet kEveryCommand = ~CommandSet{0};

template <typename... More>
constexpr CommandSet Commands(More... commands) {
  return (CommandSet{0} | ... | (CommandSet{1} << static_cast<uint32_t>(commands)));
}

struct Keyword;

// Puts the value of a keyword into its field. Returns the message to show, empty when accepted.
using TakeValueFunction = std::string_view (*)(const Keyword& keyword, const std::string& value,
                                               const CommandLineHost& host,
                                               CommandLineBlock& block);

// One keyword of the command line. Which of the field pointers is set depends on take.
struct Keyword {
  std::string_view name;
  std::string_view value_name = {};  // what the help calls the value; empty: there is none
  std::string_view help = {};        // one line without a full stop
  TakeValueFunction take = nullptr;
  Command command = Command::kNone;  // what the keyword makes the run's command, if anything
  // The commands that it changes something of. What describes the instrument, the window or the run
  // goes with every command.
  CommandSet effective_with = kEveryCommand;

  bool CommandLineBlock::*flag = nullptr;
  std::string CommandLineBlock::*text = nullptr;
  size_t max_characters = 0;  // of text
  std::optional<uint32_t> CommandLineBlock::*number = nullptr;
  std::optional<int32_t> CommandLineBlock::*signed_number = nullptr;

  std::string_view missing = {};  // the message for an empty value; empty: one is allowed or bad
  std::string_view bad = {};      // the message for a value that is not understood
};

// All keywords, the commands first, in the order in which the help shows them.
std::span<const Keyword> Keywords();

// True for the commands that this version carries out; the others are understood and refused.
bool CarriedOut(Command command);

// The names of the switches given that change nothing of the block's command, as "COMPID", in the
// order in which they were given. Empty for a command that is not carried out.
std::vector<std::string> SwitchesWithoutEffect(const CommandLineBlock& block);

// Takes one switch into the block. Returns 0, or -1 with the message to show.
int TakeItem(const Item& item, const CommandLineHost& host, CommandLineBlock& block,
             std::string& message);

}  // namespace skyhaul
