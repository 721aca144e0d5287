#include "app/console/long_commands.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "app/command_line/help_text.h"
#include "app/command_line/score_options.h"
#include "app/console/exit_status.h"
#include "app/console/settings_options.h"
#include "commands/check_signature.h"
#include "commands/convert_file.h"
#include "commands/list_ports.h"
#include "commands/open_file.h"
#include "commands/repair_file.h"
#include "commands/score_flight.h"
#include "core/text/printable.h"
#include "core/version.h"
#include "formats/igc/repairs.h"
#include "platform/terminal.h"
#include "report/file_summary.h"
#include "report/score.h"

namespace skyhaul {

namespace {

int PrintVersion(Console& console) {
  PrintResult(console, "Skyhaul " + VersionText() + '\n');
  return kExitDone;
}

int PrintPorts(const Session& session, Console& console) {
  const auto ports = ListPorts(session);
  if (!ports.has_value()) return kExitFailed;
  //  3  /dev/ttyUSB0  USB-Serial Controller
  std::string text = ports->empty() ? "No serial ports found\n" : "";
  for (const PortInfo& port : *ports) {
    const std::string number = std::to_string(port.number);
    text += (number.size() < 2 ? " " : "") + number + "  " + port.name;
    if (!port.description.empty()) text += "  " + port.description;
    text += '\n';
  }
  PrintResult(console, text);
  return kExitDone;
}

int PrintInfo(const Session& session, Console& console, const LongOptions& options) {
  const bool json = IsGiven(options, SideOption::kJson);
  std::vector<FileSummary> summaries;
  for (const std::string& file : options.files) {
    auto summary = SummariseFile(session, file, IsGiven(options, SideOption::kStrict));
    // One file that cannot be read does not keep the others from being shown; the status tells.
    if (!summary.has_value()) continue;
    // Each at once, so that a slow or bad file further on takes nothing away.
    if (!json) PrintResult(console, (summaries.empty() ? "" : "\n") + SummaryText(*summary));
    summaries.push_back(std::move(*summary));
  }
  // One array for all files, also when none could be read: a program always gets valid JSON.
  if (json) PrintResult(console, SummariesJson(summaries));
  const bool whole =
      summaries.size() == options.files.size() && std::ranges::none_of(summaries, HasDamage);
  return whole ? kExitDone : kExitFailed;
}

int PrintChecks(const Session& session, Console& console, const LongOptions& options) {
  bool all_passed = true;
  for (const std::string& file : options.files) {
    const auto result = CheckSignature(session, file);
    all_passed = all_passed && result.has_value() && result->check == igc::SecurityCheck::kPassed;
    if (!result.has_value()) continue;
    std::string text = PrintableText(file) + ": " + igc::SecurityCheckText(result->check) + '\n';
    // "failed" alone would sound like a forged flight, though only the maker can say that.
    if (result->check == igc::SecurityCheck::kFailed && !result->ours) {
      text +=
          "  signed by \"" + result->manufacturer + "\", whose records only its maker can check\n";
    }
    PrintResult(console, text);
  }
  return all_passed ? kExitDone : kExitFailed;
}

// The search for distances. The first interrupt stops it, so it lives as long as the program.
Operation distance_search;

// Reads what the side options say. Returns 0, or -1 after a message.
int TakeScoreOptions(const Session& session, const LongOptions& options,
                     ScoreFlightRequest& request) {
  OptimiseSettings settings;
  std::string message;
  if (IsGiven(options, SideOption::kGap)) {
    if (ReadGap(ValueOf(options, SideOption::kGap), settings, message) == 0) {
      request.gap_m = settings.gap_m;
    }
  }
  // The first fault is the one that is reported.
  if (message.empty() && IsGiven(options, SideOption::kFaiRule)) {
    if (ReadFaiRule(ValueOf(options, SideOption::kFaiRule), settings, message) == 0) {
      request.fai_rule = settings.fai_rule;
    }
  }
  request.exact = IsGiven(options, SideOption::kExact);
  request.strict = IsGiven(options, SideOption::kStrict);
  if (message.empty()) return 0;
  ShowMessage(Operation{.shell = session.shell}, message, "Parsing command line");
  return -1;
}

int PrintScores(const Session& session, Console& console, const LongOptions& options) {
  ScoreFlightRequest request;
  if (TakeScoreOptions(session, options, request) != 0) return kExitBadCommandLine;
  const Operation operation = {.shell = session.shell};
  const size_t count = options.files.size();
  // The progress of one long search is worth lines of its own; of many files their names are.
  if (request.exact && count == 1) distance_search.shell = session.shell;
  // The first Ctrl-C stops the search and shows what it has; the second ends the program.
  CountInterrupts(&distance_search.aborted);
  const bool json = IsGiven(options, SideOption::kJson);
  std::vector<FlightScore> scores;
  for (size_t i = 0; i < count && !distance_search.aborted; ++i) {
    if (count > 1) ShowProgress(operation, options.files[i], static_cast<int>(i * 100 / count));
    request.path = options.files[i];
    ScoreFlightResult result = ScoreFlight(session, request, distance_search);
    if (!result.done) continue;
    if (!json) {
      PrintResult(console,
                  (scores.empty() ? "" : "\n") + ScoreText(result.score, result.flight->points));
    }
    scores.push_back(std::move(result.score));
  }
  if (count > 1) ShowProgress(operation, "Done", 100);
  if (json) PrintResult(console, ScoresJson(scores));
  // An exact search that was stopped has results, but is not what was asked for.
  return scores.size() == count && !distance_search.aborted ? kExitDone : kExitFailed;
}

int PrintConversion(const Session& session, Console& console, const LongOptions& options) {
  const ConvertFileRequest request = {.from = options.files[0],
                                      .to = options.files[1],
                                      .keyword = ValueOf(options, SideOption::kFormat),
                                      .overwrite = IsGiven(options, SideOption::kOverwrite),
                                      .strict = IsGiven(options, SideOption::kStrict)};
  const ConvertFileResult result = ConvertFile(session, request);
  // Records may have been left out, which has been said: the file is there all the same.
  if (result.records > 0) {
    PrintResult(console, std::to_string(result.records) + " records written to " +
                             PrintableText(request.to) + '\n');
  }
  return result.done ? kExitDone : kExitFailed;
}

// "2 lines left out, 345 fixes written to a.igc"
int PrintRepair(const Session& session, Console& console, const LongOptions& options) {
  const RepairFileResult result =
      RepairFile(session, {.from = options.files[0],
                           .to = options.files[1],
                           .overwrite = IsGiven(options, SideOption::kOverwrite)});
  std::string text;
  if (!result.needed)
    text = PrintableText(options.files[0]) + " needs no repair; nothing was written\n";
  // Printed after a failure too: the first of several flights may have been written.
  if (!result.written.empty()) {
    text = igc::LeftOutText(result.lines_left_out) + ", " + std::to_string(result.fixes) +
           " fixes written to";
    for (const std::string& path : result.written) text.append(" ").append(PrintableText(path));
    text += '\n';
  }
  PrintResult(console, text);
  return result.done ? kExitDone : kExitFailed;
}

}  // namespace

int RunLongCommand(Session& session, Console& console, const LongOptions& options) {
  switch (options.command) {
    case LongCommand::kHelp:
      PrintResult(console, HelpText());
      return kExitDone;
    case LongCommand::kVersion:
      return PrintVersion(console);
    case LongCommand::kPorts:
      return PrintPorts(session, console);
    case LongCommand::kInfo:
      return PrintInfo(session, console, options);
    case LongCommand::kCheck:
      return PrintChecks(session, console, options);
    case LongCommand::kScore:
      return PrintScores(session, console, options);
    case LongCommand::kConvert:
      return PrintConversion(session, console, options);
    case LongCommand::kRepair:
      return PrintRepair(session, console, options);
    case LongCommand::kSettings:
      return PrintSettings(session, console, IsGiven(options, SideOption::kJson));
    case LongCommand::kSet:
      return AssignSettings(session, console, options.files);
  }
  return kExitBadCommandLine;
}

}  // namespace skyhaul
