#include "app/command_line/long_options.h"

#include <algorithm>
#include <numeric>

namespace skyhaul {

namespace {

// An unknown option is likely to be a misspelt known one up to this many edits, which forgives two
// swapped letters and one more mistake. Beyond it the nearest name would only mislead.
constexpr size_t kMaxEdits = 3;

// The least number of characters to insert, delete or replace that turns one text into the other
// (Levenshtein's distance, kept row by row).
size_t EditDistance(std::string_view from, std::string_view to) {
  // Row i holds the distances from the first i characters to each beginning of the other text.
  std::vector<size_t> row(to.size() + 1);
  std::iota(row.begin(), row.end(), size_t{0});
  for (size_t i = 0; i < from.size(); ++i) {
    size_t diagonal = row[0]++;
    for (size_t j = 0; j < to.size(); ++j) {
      const size_t replaced = diagonal + (from[i] == to[j] ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({replaced, row[j] + 1, row[j + 1] + 1});
    }
  }
  return row.back();
}

std::string Quoted(std::string_view text) {
  return '"' + std::string(text) + '"';
}

std::string UnknownOption(const std::string& argument) {
  // Of equally near names the first one in the tables is proposed.
  std::string_view nearest = kSideOptions[0].name;
  const auto consider = [&](std::string_view name) {
    if (EditDistance(argument, name) < EditDistance(argument, nearest)) nearest = name;
  };
  for (const SideOptionName& side : kSideOptions) consider(side.name);
  for (const LongOption& option : kLongOptions) consider(option.name);
  consider(kTraceOption);
  consider(kWarningOption);
  const std::string unknown = "Unknown option " + Quoted(argument);
  if (EditDistance(argument, nearest) > kMaxEdits) return unknown + " (see \"--help\")";
  return unknown + " (did you mean " + Quoted(nearest) + "?)";
}

struct Parsing {
  const LongOption* chosen = nullptr;
  const SideOptionName* wants_value = nullptr;  // the next argument is its value
  bool only_files = false;                      // "--" was met
};

const SideOptionName* FindSide(const std::string& argument) {
  for (const SideOptionName& side : kSideOptions) {
    if (side.name == argument) return &side;
  }
  return nullptr;
}

// Takes an option that says what to do. Returns what is wrong with it, empty when nothing is.
std::string TakeCommand(const std::string& argument, Parsing& parsing, LongOptions& options) {
  const auto has_name = [&](const LongOption& option) { return option.name == argument; };
  const auto found = std::find_if(std::begin(kLongOptions), std::end(kLongOptions), has_name);
  if (found == std::end(kLongOptions)) return UnknownOption(argument);
  if (parsing.chosen != nullptr && parsing.chosen != found) {
    return Quoted(parsing.chosen->name) + " and " + Quoted(found->name) + " cannot be combined";
  }
  // "--info --info" is harmless: the same option given twice says nothing new.
  parsing.chosen = found;
  options.command = found->command;
  return {};
}

// Takes one argument. Returns what is wrong with it, empty when nothing is.
std::string TakeArgument(const std::string& argument, Parsing& parsing, LongOptions& options) {
  // Before anything else: a value may begin with a dash, and "--gap -1" should complain about the
  // number.
  if (parsing.wants_value != nullptr) {
    options.values[static_cast<size_t>(parsing.wants_value->option)] = argument;
    parsing.wants_value = nullptr;
    return {};
  }
  // "skyhaul --info -- --odd-name.igc": after "--" everything is a file.
  if (parsing.only_files || !argument.starts_with('-')) {
    options.files.push_back(argument);
    return {};
  }
  if (argument == "--") {
    parsing.only_files = true;
    return {};
  }
  const SideOptionName* side = FindSide(argument);
  if (side == nullptr) return TakeCommand(argument, parsing, options);
  options.given |= Sides(side->option);
  if (side->takes_value) parsing.wants_value = side;
  return {};
}

// What is wrong with the arguments as a whole, empty when nothing is.
std::string CheckOptions(const Parsing& parsing, const LongOptions& options) {
  if (parsing.wants_value != nullptr) {
    return "Missing value after " + Quoted(parsing.wants_value->name);
  }
  if (parsing.chosen == nullptr) return "No option says what to do (see \"--help\")";
  const LongOption& chosen = *parsing.chosen;
  const std::string name = Quoted(chosen.name);
  for (const SideOptionName& side : kSideOptions) {
    // An option that would be passed over is refused, so that nobody trusts it to have worked.
    if (!IsGiven(options, side.option) || (chosen.sides & Sides(side.option)) != 0) continue;
    return Quoted(side.name) + " does not go with " + name;
  }
  if (options.files.size() < chosen.min_files) {
    return "Missing " + std::string(chosen.files_are) + " after " + name;
  }
  if (options.files.size() > chosen.max_files) {
    return "Unexpected " + Quoted(options.files[chosen.max_files]) + " after " + name;
  }
  return {};
}

}  // namespace

int TakeOption(std::vector<std::string>& arguments, std::string_view name,
               std::optional<std::string>& value, std::string& message) {
  const auto find = [&] {
    const auto end = std::find(arguments.begin(), arguments.end(), "--");
    const auto found = std::find(arguments.begin(), end, name);
    return found == end ? arguments.end() : found;
  };
  for (auto option = find(); option != arguments.end(); option = find()) {
    const auto next = option + 1;
    if (next == arguments.end() || next->empty()) {
      message = "Missing value after " + Quoted(name);
      return -1;
    }
    value = *next;
    arguments.erase(option, next + 1);
  }
  return 0;
}

bool HasLongOptions(std::span<const std::string> arguments) {
  return !arguments.empty() && arguments.front().starts_with("--");
}

int ParseLongOptions(std::span<const std::string> arguments, LongOptions& options,
                     std::string& message) {
  options = {};
  message.clear();
  Parsing parsing;
  for (const std::string& argument : arguments) {
    message = TakeArgument(argument, parsing, options);
    if (!message.empty()) return -1;
  }
  message = CheckOptions(parsing, options);
  return message.empty() ? 0 : -1;
}

}  // namespace skyhaul
