#include "app/command_line/from_arguments.h"

#include <algorithm>
#include <string_view>

#include "app/command_line/keywords.h"
#include "app/command_line/tokeniser.h"

namespace skyhaul {

namespace {

// /PILOT=First Last  ->  /PILOT="First Last"
std::string QuoteValue(const std::string& word) {
  const size_t equals = word.find('=');
  // The shell has taken the quotes away, and a value with a blank would end there.
  if (!word.starts_with('/') || equals == std::string::npos) return word;
  const std::string value = word.substr(equals + 1);
  const bool has_blanks = value.find_first_of(" \t") != std::string::npos;
  // The syntax has no way to write a quote inside quotes, so such a value stays as it is.
  const bool has_quotes = value.find('"') != std::string::npos;
  if (!has_blanks || has_quotes) return word;
  return word.substr(0, equals + 1) + '"' + value + '"';
}

// The number of switches in a text that holds nothing else, or -1.
int CountSwitches(std::string_view text) {
  int count = 0;
  const auto take = [&](const Item&) {
    ++count;
    return 0;
  };
  std::string ignored;
  return text.starts_with('/') && Tokenise(text, take, ignored) == 0 ? count : -1;
}

bool IsKeyword(const std::string& name) {
  const std::span<const Keyword> keywords = Keywords();
  return std::any_of(keywords.begin(), keywords.end(),
                     [&](const Keyword& keyword) { return keyword.name == name; });
}

// True for one word that holds a whole command line: a shell has taken away the quotes around it.
// The keywords must be known, because the value of a single switch may hold " /" as well:
//   /IGC2KML=/home/ann/my /flight.igc
bool HoldsSeveralSwitches(const std::string& word) {
  std::string ignored;
  const auto take = [](const Item& item) { return IsKeyword(item.keyword) ? 0 : -1; };
  return CountSwitches(word) > 1 && Tokenise(word, take, ignored) == 0;
}

// "/GPS=IQCOMPEO /EXIT"           all switches in one pair of quotes
// "/PILOT=First Last" "/EXIT"     not: each has its own, as PowerShell writes them
// "/EXIT" /USB                    not: only the first has
// With several switches between the first two quotes those are all, and what follows is dropped; a
// single one is all only when nothing follows, or the others would be lost.
bool IsQuotedAsAWhole(std::string_view text) {
  if (!text.starts_with('"')) return false;
  const size_t close = text.find('"', 1);
  if (close == std::string_view::npos) return false;
  const int switches = CountSwitches(text.substr(1, close - 1));
  const bool ends_there = text.find_first_not_of(" \t", close + 1) == std::string_view::npos;
  return switches > 1 || (switches == 1 && ends_there);
}

// True for a text that the parser reads as it was typed. Splitting it first would do harm: by the
// rules that C programs on Windows split by, \" is a quote inside a word, so that the value of
//   /IGC_LOG="C:\My flights\" /EXIT
// would not end before the end of the text.
bool ReadsAsTyped(std::string_view text) {
  return CountSwitches(text) > 0 || IsQuotedAsAWhole(text);
}

}  // namespace

ArgumentText CommandTextFromArguments(std::span<const std::string> words, const std::string& typed,
                                      const FileExistsFunction& file_exists) {
  ArgumentText result;
  if (ReadsAsTyped(typed)) {
    result.text = typed;
    return result;
  }
  bool has_switches = false;
  for (const std::string& word : words) {
    // An empty argument would become a second blank between two switches.
    if (word.empty()) continue;
    // On Linux an absolute path looks like a switch: /home/ann/flight.igc
    if (file_exists(word)) {
      result.files.push_back(word);
      continue;
    }
    if (result.text.empty()) {
      // The first word decides. The name of a file to open is not changed, however many words it
      // has.
      has_switches = word.starts_with('/');
    } else {
      result.text += ' ';
    }
    const bool whole = words.size() == 1 && HoldsSeveralSwitches(word);
    result.text += has_switches && !whole ? QuoteValue(word) : word;
  }
  return result;
}

}  // namespace skyhaul
