#include "app/console/long_commands.h"

#include <cstdio>
#include <string>
#include <vector>

#include "analysis/optimise.h"
#include "analysis/optimise_exact.h"
#include "app/command_line/help_text.h"
#include "app/command_line/score_options.h"
#include "app/console/batch.h"
#include "app/console/settings_commands.h"
#include "core/version.h"
#include "files/file_io.h"
#include "files/igc_files.h"
#include "formats/igc/header.h"
#include "formats/igc/security_record.h"
#include "platform/file.h"
#include "platform/terminal.h"
#include "report/score.h"
#include "report/summary.h"
#include "settings/run_defaults.h"

namespace skyhaul {

namespace {

int PrintVersion() {
  std::printf("Skyhaul %d.%02d\n", kVersionNumber / 100, kVersionNumber % 100);
  return kExitDone;
}

int PrintPorts(const Platform& platform, const Operation& operation) {
  std::vector<PortInfo> ports;
  if (platform.serial.list(platform.serial.context, ports) != 0) {
    ShowMessage(operation, "The system's list of serial ports cannot be read", "Serial ports");
    return kExitFailed;
  }
  for (const PortInfo& port : ports) {
    const std::string description = port.description.empty() ? "" : "  " + port.description;
    std::printf("%2u  %s%s\n", port.number, port.name.c_str(), description.c_str());
  }
  if (ports.empty()) std::puts("No serial ports found");
  return kExitDone;
}

int PrintInfo(const Operation& operation, const LongOptions& options) {
  std::vector<FlightSummary> summaries;
  for (const std::string& file : options.files) {
    std::string text;
    std::vector<TrackPoint> points;
    if (LoadIgcFile(operation, file, text, points) < 0) continue;
    summaries.push_back(SummariseFlight(file, text, points));
  }
  if (IsGiven(options, SideOption::kJson)) {
    std::fputs(SummariesJson(summaries).c_str(), stdout);
  } else {
    for (size_t i = 0; i < summaries.size(); ++i) {
      std::printf("%s%s", i > 0 ? "\n" : "", SummaryText(summaries[i]).c_str());
    }
  }
  return summaries.size() == options.files.size() ? kExitDone : kExitFailed;
}

// Only files that this program signed can pass: each maker keeps its own secret.
constexpr const char* kOurManufacturer = "XSH";

bool CheckFile(const Operation& operation, const std::string& file) {
  std::string text;
  const FileResult read = ReadWholeFile(file, text);
  if (read.problem != FileProblem::kNone) {
    ShowMessage(operation, "Error opening file\n" + file + ": " + read.reason, "Security check");
    return false;
  }
  const igc::SecurityCheck check = igc::CheckSecurityRecord(text);
  std::printf("%s: %s\n", file.c_str(), igc::SecurityCheckText(check));
  const std::string manufacturer = igc::ReadHeader(text).manufacturer;
  if (check == igc::SecurityCheck::kFailed && manufacturer != kOurManufacturer) {
    std::printf("  signed by \"%s\", whose records only its maker can check\n",
                manufacturer.c_str());
  }
  return check == igc::SecurityCheck::kPassed;
}

int PrintChecks(const Operation& operation, const LongOptions& options) {
  bool all_passed = true;
  for (const std::string& file : options.files) {
    all_passed = CheckFile(operation, file) && all_passed;
  }
  return all_passed ? kExitDone : kExitFailed;
}

constexpr uint32_t kExactBudget_ms = 60'000;

// The search for distances. It says nothing, because the table does; the first interrupt stops it.
Operation distance_search;

// Returns 0, or -1 after a message.
int ScoreFile(const Operation& operation, const LongOptions& options, FlightScore& score,
              std::vector<TrackPoint>& points) {
  const Operation* search = &distance_search;
  std::string text;
  if (LoadIgcFile(operation, score.file, text, points) < 0) return -1;
  score.fixes = points.size();
  const bool exact = IsGiven(options, SideOption::kExact);
  const int result =
      exact ? OptimiseTrackExact(points, score.settings, kExactBudget_ms, score.result, search)
            : OptimiseTrack(points, score.settings, score.result, search);
  if (result == 0) return 0;
  const char* reason = search->aborted ? ": stopped"
                       : exact         ? ": too many fixes"
                                       : ": not enough memory";
  ShowMessage(operation, score.file + reason, "Distances");
  return result;
}

int PrintScores(const Platform& platform, const Operation& operation, const LongOptions& options) {
  const RunDefaults stored = LoadRunDefaults(platform, operation);
  OptimiseSettings settings = {.gap_m = stored.loop_gap_m, .fai_rule = stored.fai_rule};
  std::string message;
  if ((IsGiven(options, SideOption::kGap) &&
       ReadGap(ValueOf(options, SideOption::kGap), settings, message) != 0) ||
      (IsGiven(options, SideOption::kFaiRule) &&
       ReadFaiRule(ValueOf(options, SideOption::kFaiRule), settings, message) != 0)) {
    ShowMessage(operation, message, "Parsing command line");
    return kExitBadCommandLine;
  }
  CountInterrupts(&distance_search.aborted);
  const bool json = IsGiven(options, SideOption::kJson);
  std::vector<FlightScore> scores;
  std::vector<TrackPoint> points;
  for (size_t i = 0; i < options.files.size() && !distance_search.aborted; ++i) {
    if (options.files.size() > 1) {
      ShowProgress(operation, options.files[i], static_cast<int>(i * 100 / options.files.size()));
    }
    FlightScore score;
    score.file = options.files[i];
    score.settings = settings;
    if (ScoreFile(operation, options, score, points) != 0) continue;
    if (!json) std::printf("%s%s", scores.empty() ? "" : "\n", ScoreText(score, points).c_str());
    scores.push_back(std::move(score));
  }
  if (options.files.size() > 1) ShowProgress(operation, "Done", 100);
  if (json) std::fputs(ScoresJson(scores).c_str(), stdout);
  const bool all = scores.size() == options.files.size() && !distance_search.aborted;
  return all ? kExitDone : kExitFailed;
}

int PrintConversion(const Operation& operation, const LongOptions& options) {
  const std::string& to = options.files[1];
  const int count =
      ConvertFile(operation, options.files[0], to, ValueOf(options, SideOption::kFormat),
                  IsGiven(options, SideOption::kOverwrite));
  if (count < 0) return kExitFailed;
  std::printf("%d records written to %s\n", count, to.c_str());
  return kExitDone;
}

}  // namespace

int RunLongCommand(const Platform& platform, const Operation& operation,
                   const LongOptions& options) {
  switch (options.command) {
    case LongCommand::kHelp:
      std::fputs(HelpText().c_str(), stdout);
      return kExitDone;
    case LongCommand::kVersion:
      return PrintVersion();
    case LongCommand::kPorts:
      return PrintPorts(platform, operation);
    case LongCommand::kInfo:
      return PrintInfo(operation, options);
    case LongCommand::kCheck:
      return PrintChecks(operation, options);
    case LongCommand::kScore:
      return PrintScores(platform, operation, options);
    case LongCommand::kConvert:
      return PrintConversion(operation, options);
    case LongCommand::kSettings:
      return PrintSettings(platform, operation, IsGiven(options, SideOption::kJson));
    case LongCommand::kSet:
      return ChangeSettings(platform, operation, options.files);
  }
  return kExitBadCommandLine;
}

}  // namespace skyhaul
