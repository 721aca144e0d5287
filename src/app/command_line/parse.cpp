#include "app/command_line/parse.h"

#include <string_view>

#include "app/command_line/characters.h"
#include "app/command_line/checks.h"
#include "app/command_line/long_options.h"
#include "app/command_line/tokeniser.h"
#include "app/command_line/value_text.h"

namespace skyhaul {

namespace {

// "/GPS=IQCOMPEO /EXIT" dropped  ->  /GPS=IQCOMPEO /EXIT
// "my flight.igc"                ->  my flight.igc
// Returns 0 or -1 with a message.
int Unquote(std::string_view& text, std::string& message) {
  if (!text.starts_with('"')) return 0;
  const size_t close = text.find('"', 1);
  if (close == std::string_view::npos) {
    message = "Bad double apostrophe (\") balance";
    return -1;
  }
  // What follows the second quote is dropped.
  text = text.substr(1, close - 1);
  return 0;
}

int ParseSwitches(std::string_view text, const CommandLineHost& host, CommandLineBlock& block,
                  std::string& message) {
  block.present = true;
  const auto take = [&](const Item& item) { return TakeItem(item, host, block, message); };
  const int tokenised = Tokenise(text, take, message);
  return tokenised != 0 ? tokenised : CheckBlock(block, host, message);
}

// A shell's arguments have no limit of their own, and a path that is cut names another file.
int CheckLengths(std::string_view text, std::string& message) {
  if (text.starts_with('/')) return CheckValueLengths(text, message);
  if (CutToCharacters(text, kMaxFileName).size() == text.size()) return 0;
  message =
      "The name of the file to open is longer than " + std::to_string(kMaxFileName) + " characters";
  return -1;
}

// Returns what is wrong with the value of --warning, or with the command that it stands beside;
// empty when nothing is.
std::string TakeWarning(const std::string& value, CommandLineBlock& block) {
  block.warning_m = NumberFromText(value);
  if (!block.warning_m || *block.warning_m > kMaxWarning_m) {
    return "\"--warning\" needs a number of metres from 0 to 9999";
  }
  // Where it would be passed over nobody may trust it to have worked.
  return block.command == Command::kUploadAirspace ? "" : kWarningMisplaced;
}

// What becomes of a value or a file name that is too long.
enum class TooLong { kCut, kRefuse };

int Parse(const std::string& text, TooLong too_long, const CommandLineHost& host,
          CommandLineBlock& block, std::string& message) {
  block = {};
  message.clear();
  // c_str(), so that the text ends at its first zero, as a command line of the system does.
  std::string_view rest(text.c_str());
  if (rest.empty()) return 0;
  if (Unquote(rest, message) != 0) return -1;
  if (too_long == TooLong::kRefuse && CheckLengths(rest, message) != 0) return -1;
  // A double click on a file calls the program with the file's path alone.
  if (!rest.starts_with('/')) {
    block.present = true;
    block.command = Command::kOpenFile;
    block.file = CutToCharacters(rest, kMaxFileName);
    return 0;
  }
  // A block that is half filled would start half a command.
  const int parsed = ParseSwitches(rest, host, block, message);
  if (parsed != 0) block = {};
  return parsed;
}

}  // namespace

int ParseCommandLine(const std::string& text, const CommandLineHost& host, CommandLineBlock& block,
                     std::string& message) {
  return Parse(text, TooLong::kCut, host, block, message);
}

int ParseArguments(const ArgumentText& arguments, const CommandLineHost& host,
                   CommandLineBlock& block, std::string& message) {
  if (Parse(arguments.text, TooLong::kRefuse, host, block, message) != 0) return -1;
  if (arguments.warning) message = TakeWarning(*arguments.warning, block);
  if (!message.empty()) {
    block = {};
    return -1;
  }
  if (arguments.files.empty()) return 0;
  // A block has one place for a file, and it would hold only the last.
  if (arguments.files.size() > 1 || block.command == Command::kOpenFile) {
    message = "Only one file can be opened";
  } else if (block.command != Command::kNone) {
    message = "A file to open does not go with a command";
  }
  if (!message.empty()) {
    block = {};
    return -1;
  }
  block.present = true;
  block.command = Command::kOpenFile;
  block.file = arguments.files[0];
  return 0;
}

}  // namespace skyhaul
