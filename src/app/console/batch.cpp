#include "app/console/batch.h"

#include <string>
#include <utility>
#include <vector>

#include "app/command_line/keywords.h"
#include "app/console/batch_run.h"
#include "core/track_log.h"
#include "files/igc_files.h"
#include "platform/file.h"
#include "platform/path.h"
#include "report/summary.h"

namespace skyhaul {

namespace {

int RunOpenFile(Batch& batch) {
  std::string text;
  std::vector<TrackPoint> points;
  if (LoadIgcFile(batch.operation, batch.block->file, text, points) < 0) return kExitFailed;
  Print(batch, SummaryText(SummariseFlight(batch.block->file, text, points)));
  InstallTrackLog({.points = std::move(points)});
  return kExitDone;
}

// The commands that this version carries out.
struct BatchCommand {
  Command command;
  int (*run)(Batch& batch);
};

constexpr BatchCommand kBatchCommands[] = {
    {.command = Command::kTrackLogToKml, .run = RunTrackFile},
    {.command = Command::kTrackLogToOzi, .run = RunTrackFile},
    {.command = Command::kTrackLogToIgc, .run = RunIgcLog},
    {.command = Command::kDownloadWaypoints, .run = RunReadWaypoints},
    {.command = Command::kUploadWaypoints, .run = RunWriteWaypoints},
    {.command = Command::kUploadWaypointsSecondForm, .run = RunWriteWaypoints},
    {.command = Command::kIgcToKml, .run = RunConvertToKml},
    {.command = Command::kOpenFile, .run = RunOpenFile},
    {.command = Command::kUploadAirspace, .run = RunWriteAirspaces},
    {.command = Command::kDownloadGeographicWaypoints, .run = RunReadWaypoints},
    {.command = Command::kFlightList, .run = RunFlightList},
    {.command = Command::kConvertWaypoints, .run = RunConvertWaypoints},
};

}  // namespace

void Tell(const Batch& batch, const std::string& text, uint32_t patience_ms) {
  constexpr uint32_t kRetry_ms = 50;
  if (batch.block->notify_client.empty()) return;
  const NotifierFunctions& notifier = batch.run->platform->notifier;
  const ClockFunctions& clock = batch.run->platform->clock;
  const uint64_t start_ms = clock.tick_ms(clock.context);
  while (notifier.send(notifier.context, batch.block->notify_client, text) != 0) {
    if (clock.tick_ms(clock.context) - start_ms >= patience_ms) {
      ShowStatus(batch.operation, "Client " + batch.block->notify_client + " cannot be told");
      return;
    }
    clock.wait(clock.context, kRetry_ms);
  }
}

int Finish(const Batch& batch, bool done) {
  std::string notice = done ? "Done=1" : "Done=0";
  for (const std::string& path : batch.written) notice += "\n" + path;
  // A client that was slow once is not waited for with every position, but for the end it is.
  constexpr uint32_t kPatience_ms = 1000;
  Tell(batch, notice, kPatience_ms);
  return done ? kExitDone : kExitFailed;
}

void Print(const Batch& batch, const std::string& text) {
  PrintResult(*batch.run->console, text);
}

std::string Identity(const JobOutcome& outcome) {
  if (outcome.description.empty()) return "";
  return "Instrument " + outcome.description + "\nOwner " + outcome.owner + "\n";
}

int CheckFolder(const Batch& batch, const std::string& folder, const char* title) {
  if (FolderIsWritable(folder)) return 0;
  const char* text =
      IsDirectory(folder) ? "There is no permission to save files in " : "There is no folder ";
  ShowMessage(batch.operation, text + folder, title);
  return -1;
}

int CheckTarget(const Batch& batch, const std::string& path, const char* keyword, FileKind kind) {
  constexpr const char* kTitle = "Writing file";
  std::string message;
  if (FormatToWrite(path, keyword, kind, message) == nullptr) {
    ShowMessage(batch.operation, message, kTitle);
    return -1;
  }
  if (FileExists(path) && !batch.block->overwrite) {
    ShowMessage(batch.operation, path + " exists already", kTitle);
    return -1;
  }
  return CheckFolder(batch, FolderOf(path), kTitle);
}

JobOutcome RunJob(const Batch& batch, uint32_t access_type, JobData data) {
  JobRequest request = MakeRequest(*batch.run, *batch.block, batch.shell, access_type);
  request.data = std::move(data);
  return RunJobToEnd(*batch.run, std::move(request));
}

int RunBatch(const BatchRun& run, const CommandLineBlock& block) {
  Batch batch;
  batch.run = &run;
  batch.block = &block;
  batch.shell = ConsoleShell(*run.console);
  batch.operation.shell = &batch.shell;
  run.console->track_numbers = block.tracks;
  for (const std::string& name : SwitchesWithoutEffect(block)) {
    ShowStatus(batch.operation, name + " has no effect with this command");
  }
  for (const BatchCommand& command : kBatchCommands) {
    if (command.command == block.command) return command.run(batch);
  }
  const bool none = block.command == Command::kNone;
  ShowMessage(batch.operation,
              none ? "The command line names nothing to do; see --help"
                   : "This version cannot carry out this command yet; see --help",
              "Command line");
  return none ? kExitBadCommandLine : Finish(batch, false);
}

}  // namespace skyhaul
