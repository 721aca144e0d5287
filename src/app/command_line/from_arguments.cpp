#include "app/command_line/from_arguments.h"

#include "app/command_line/tokeniser.h"

namespace skyhaul {

namespace {

std::string QuoteValue(const std::string& argument) {
  const size_t equals = argument.find('=');
  if (!argument.starts_with('/') || equals == std::string::npos) return argument;
  const std::string value = argument.substr(equals + 1);
  const bool has_blanks = value.find_first_of(" \t") != std::string::npos;
  const bool has_quotes = value.find('"') != std::string::npos;
  if (!has_blanks || has_quotes) return argument;
  return argument.substr(0, equals + 1) + '"' + value + '"';
}

}  // namespace

bool ReadsAsSwitches(const std::string& text) {
  std::string ignored;
  const auto take = [](const Item&) { return 0; };
  return text.starts_with('/') && Tokenise(text, take, ignored) == 0;
}

ArgumentText CommandTextFromArguments(std::span<const std::string> arguments,
                                      const FileExistsFunction& file_exists) {
  ArgumentText result;
  bool has_switches = false;
  for (const std::string& argument : arguments) {
    if (argument.empty()) continue;
    if (file_exists(argument)) {
      result.files.push_back(argument);
      continue;
    }
    if (result.text.empty()) {
      has_switches = argument.starts_with('/');
    } else {
      result.text += ' ';
    }
    result.text += has_switches ? QuoteValue(argument) : argument;
  }
  return result;
}

}  // namespace skyhaul
