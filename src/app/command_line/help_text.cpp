#include "app/command_line/help_text.h"

#include <algorithm>
#include <string_view>

#include "app/command_line/from_arguments.h"
#include "app/command_line/keywords.h"
#include "app/command_line/long_options.h"
#include "protocols/families.h"

namespace skyhaul {

namespace {

constexpr size_t kLastColumn = 79;
constexpr size_t kIndent = 2;
constexpr size_t kHelpColumn = 27;  // where the explanations begin, counted from 0

constexpr std::string_view kSynopsis =
    "Usage: skyhaul FILE\n"
    "       skyhaul /SWITCH[=VALUE]...\n"
    "       skyhaul --OPTION [FILE...]\n"
    "\n"
    "Opens a file, runs one command on an instrument, or looks at flight files.\n";

constexpr std::string_view kWarningHelp =
    "how far before the airspaces of /WR_CTR the instrument warns, 0 to 9999; 2000 when not given";

constexpr std::string_view kSwitchNotes =
    "A value with blanks is quoted: '/PILOT=First Last'. Case does not matter in\n"
    "the names of switches and instruments. A command that this version cannot\n"
    "carry out says so and ends with status 1; most switches that have no effect\n"
    "with the command are named.\n";

constexpr std::string_view kStatusesAndExamples =
    "\n"
    "Exit status: 0 the job is done, 1 it failed, 2 the command line is wrong.\n"
    "\n"
    "Examples:\n"
    "  skyhaul /GPS=IQCOMPEO /COM=1 /IGC_LOG=flights /EXIT\n"
    "  skyhaul /GPS=IQCOMPEO /COM=/dev/ttyUSB0 /TRACK=1,3-5 '/PILOT=First Last' \\\n"
    "          /IGC_LOG=flights /OVERWRITE /EXIT\n"
    "  skyhaul --info 2024-06-01-xsh-abc-01.igc --json\n";

// Writes words from the current column on; a word that would pass the last column starts a new line
// at the given one.
void AppendWords(std::string& out, size_t column, size_t line_start, std::string_view words) {
  while (!words.empty()) {
    const std::string_view word = words.substr(0, words.find(' '));
    words.remove_prefix(std::min(word.size() + 1, words.size()));
    const bool first = column == line_start;
    // The first word of a line is written even when it is too long, or no line would ever take it.
    if (!first && column + 1 + word.size() > kLastColumn) {
      out += '\n' + std::string(line_start, ' ');
      column = line_start;
    } else if (!first) {
      out += ' ';
      ++column;
    }
    out += word;
    column += word.size();
  }
  out += '\n';
}

void AppendEntry(std::string& out, const std::string& name, std::string_view help) {
  out += std::string(kIndent, ' ') + name;
  const size_t column = kIndent + name.size();
  // At least two blanks part a name from its help; a longer name has a line of its own.
  if (column + 1 < kHelpColumn) {
    out += std::string(kHelpColumn - column, ' ');
  } else {
    out += '\n' + std::string(kHelpColumn, ' ');
  }
  AppendWords(out, kHelpColumn, kHelpColumn, help);
}

void AppendLongOptions(std::string& out) {
  out += "\nOptions:\n";
  for (const LongOption& option : kLongOptions) {
    std::string name(option.name);
    // "--check FILE..."
    if (!option.argument_help.empty()) name += ' ' + std::string(option.argument_help);
    AppendEntry(out, name, option.help);
  }
  AppendEntry(out, std::string(kTraceOption) + " FILE",
              "with any of these, or beside switches: append the whole conversation with the "
              "instrument to FILE; SKYHAUL_TRACE=FILE in the environment does the same");
}

void AppendKeywords(std::string& out, bool commands) {
  for (const Keyword& keyword : Keywords()) {
    // "/IGC_LOG=DIRECTORY": the value's name shows what belongs there.
    if ((keyword.command != Command::kNone) != commands) continue;
    std::string name = "/" + std::string(keyword.name);
    if (!keyword.value_name.empty()) name += '=' + std::string(keyword.value_name);
    const bool refused = keyword.command != Command::kNone && !CarriedOut(keyword.command);
    AppendEntry(out, name, std::string(keyword.help) + (refused ? " (not in this version)" : ""));
  }
}

// "IQBASIC    Flytec and Brauniger: 6015, IQ Basic"
void AppendGpsTypes(std::string& out, std::string_view title, bool with_driver) {
  out += title;
  for (const Family& family : Families()) {
    std::string names;
    for (const GpsName& name : family.names) {
      if (name.name.empty()) continue;
      names += (names.empty() ? "" : ", ") + std::string(name.name);
    }
    // A row without names is reached through another one's.
    if (names.empty() || HasDriver(family) != with_driver) continue;
    std::string makes(family.maker);
    if (!family.models.empty()) makes += ": " + std::string(family.models);
    AppendEntry(out, names, makes);
  }
}

}  // namespace

std::string HelpText() {
  std::string out(kSynopsis);
  AppendLongOptions(out);
  out += "\nSwitches that are commands, one in a run:\n";
  // Commands first: a run of switches needs one of them.
  AppendKeywords(out, true);
  out += "\nSwitches that say how:\n";
  AppendKeywords(out, false);
  AppendEntry(out, std::string(kWarningOption) + " METRES", kWarningHelp);
  out += '\n';
  out += kSwitchNotes;
  AppendGpsTypes(out, "\nInstruments for /GPS=TYPE:\n", true);
  AppendGpsTypes(out, "\nNames that are known but have no driver yet:\n", false);
  out += kStatusesAndExamples;
  return out;
}

}  // namespace skyhaul
