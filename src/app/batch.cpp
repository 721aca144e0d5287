#include "app/batch.h"

#include <algorithm>
#include <cstdio>
#include <string>
#include <utility>
#include <vector>

#include "app/batch_job.h"
#include "app/igc_files.h"
#include "app/summary.h"
#include "core/time_scale.h"
#include "core/track_log.h"
#include "platform/file.h"
#include "protocols/flytec/track_list.h"

namespace skyhaul {

namespace {

// What one run works with and has done so far.
struct Batch {
  const BatchRun* run = nullptr;
  const CommandLineBlock* block = nullptr;
  Shell shell;
  Operation operation;
  std::vector<std::string> written;  // paths of the files written
};

void Tell(const Batch& batch, const std::string& text) {
  if (batch.block->notify_client.empty()) return;
  const NotifierFunctions& notifier = batch.run->platform->notifier;
  if (notifier.send(notifier.context, batch.block->notify_client, text) == 0) return;
  ShowStatus(batch.operation, "Client " + batch.block->notify_client + " cannot be told");
}

int Finish(const Batch& batch, bool done) {
  std::string notice = done ? "Done=1" : "Done=0";
  for (const std::string& path : batch.written) notice += "\n" + path;
  Tell(batch, notice);
  return done ? kExitDone : kExitFailed;
}

void Print(const Batch& batch, const std::string& text) {
  PrintResult(*batch.run->console, text);
}

std::string Identity(const JobOutcome& outcome) {
  if (outcome.description.empty()) return "";
  return "Instrument " + outcome.description + "\nOwner " + outcome.owner + "\n";
}

CalendarTime Now(const Platform& platform) {
  const int64_t unix_time_s = platform.clock.unix_time_s(platform.clock.context);
  return CalendarFromTime(TimeFromUnix(unix_time_s));
}

IgcSave MakeSave(const Batch& batch, const JobOutcome& outcome) {
  const CommandLineBlock& block = *batch.block;
  IgcSave save;
  save.path = block.file;
  if (save.path.back() != '/') save.path += '/';
  save.overwrite = block.overwrite;
  save.header = batch.run->settings->igc_header;
  save.header.pilot = block.pilot.empty() ? outcome.pilot_name : block.pilot;
  save.options = {.sign = true,
                  .may_be_signed = true,
                  .serial = "000",
                  .free_text = outcome.description,
                  .download_time = Now(*batch.run->platform)};
  save.not_over = batch.written;
  return save;
}

int SaveTrack(Batch& batch, const JobOutcome& outcome, const TrackLog& log) {
  std::string path;
  if (SaveIgcAuto(batch.operation, log, MakeSave(batch, outcome), path) < 0) return -1;
  batch.written.push_back(path);
  Print(batch, "Saved " + path + "\n");
  return 0;
}

bool StartsEarlier(const DownloadedTrack& a, const DownloadedTrack& b) {
  return a.points.front().time < b.points.front().time;
}

// An instrument without a track list can still give the one flight that is selected on it.
JobOutcome DownloadTracks(const Batch& batch, const JobRequest& request) {
  JobOutcome outcome = RunJobToEnd(*batch.run, request);
  if (outcome.result != kNoTrackList) return outcome;
  if (!batch.block->tracks.empty()) {
    ShowMessage(batch.operation,
                "This instrument has no track list: leave TRACK out to download the flight that is "
                "selected on it",
                "Read GPS track log");
    return outcome;
  }
  ShowStatus(batch.operation,
             "This instrument has no track list, downloading the flight that is selected on it");
  JobRequest current = request;
  current.parameter = kCurrentTrack;
  return RunJobToEnd(*batch.run, std::move(current));
}

// Told before the download: a folder that nothing can be saved in should not cost a pilot the whole
// transfer. One whose name depends on the flight can only be found out afterwards.
int CheckFolder(const Batch& batch) {
  const std::string& folder = batch.block->file;
  if (folder.find('$') != std::string::npos || FolderIsWritable(folder)) return 0;
  const bool exists = IsDirectory(folder);
  ShowMessage(
      batch.operation,
      (exists ? "There is no permission to save files in " : "There is no folder ") + folder,
      "Save IGC log");
  return -1;
}

// Saves the tracks, the oldest first. A track that cannot be saved does not keep the others from
// it. When the whole job succeeded they become the current track log, the newest at last; else what
// had arrived whole is only saved. Returns 0, or -1 when one could not be saved.
int SaveTracks(Batch& batch, JobOutcome& outcome) {
  std::vector<DownloadedTrack>& tracks = outcome.data.tracks;
  std::sort(tracks.begin(), tracks.end(), StartsEarlier);
  int result = 0;
  for (DownloadedTrack& track : tracks) {
    TrackLog log;
    log.points = std::move(track.points);
    log.instrument_igc = std::move(track.igc);
    if (SaveTrack(batch, outcome, log) != 0) result = -1;
    if (outcome.result < 0) continue;
    InstallTrackLog(std::move(log.points), std::move(log.instrument_igc));
  }
  return result;
}

int RunIgcLog(Batch& batch) {
  if (CheckFolder(batch) != 0) return Finish(batch, false);
  const JobRequest request = MakeRequest(*batch.run, *batch.block, batch.shell, kReadTrackLog);
  JobOutcome outcome = DownloadTracks(batch, request);
  Print(batch, Identity(outcome));
  // Tracks that were to be joined are no flights by themselves.
  if (outcome.result < 0 && batch.block->no_split) return Finish(batch, false);
  const int saved = SaveTracks(batch, outcome);
  return Finish(batch, outcome.result >= 0 && saved == 0);
}

std::string FlightNotice(const TrackListEntry& entry) {
  const CalendarTime start = CalendarFromTime(entry.start_time);
  char text[96];
  std::snprintf(text, sizeof text, "Flight=%u,%04d-%02d-%02d,%02d:%02d:%02d,%02u:%02u:%02u",
                entry.index + 1, start.year, start.month, start.day, start.hour, start.minute,
                start.second, entry.duration_s / 3600, entry.duration_s / 60 % 60,
                entry.duration_s % 60);
  return text;
}

int RunFlightList(Batch& batch) {
  const JobRequest request = MakeRequest(*batch.run, *batch.block, batch.shell, kReadFlightList);
  const JobOutcome outcome = RunJobToEnd(*batch.run, request);
  if (outcome.result == kNoTrackList) {
    ShowMessage(batch.operation, "This instrument has no track list", "Read GPS track list");
  }
  if (outcome.result < 0) return Finish(batch, false);
  Print(batch, Identity(outcome) + TrackListTable(outcome.data.track_list, {}));
  for (const TrackListEntry& entry : outcome.data.track_list) Tell(batch, FlightNotice(entry));
  return Finish(batch, true);
}

int RunOpenFile(Batch& batch) {
  std::string text;
  std::vector<TrackPoint> points;
  if (LoadIgcFile(batch.operation, batch.block->file, text, points) < 0) return kExitFailed;
  Print(batch, SummaryText(SummariseFlight(batch.block->file, text, points)));
  InstallTrackLog(std::move(points));
  return kExitDone;
}

// The commands that this version carries out.
struct BatchCommand {
  Command command;
  int (*run)(Batch& batch);
};

constexpr BatchCommand kBatchCommands[] = {
    {.command = Command::kTrackLogToIgc, .run = RunIgcLog},
    {.command = Command::kFlightList, .run = RunFlightList},
    {.command = Command::kOpenFile, .run = RunOpenFile},
};

}  // namespace

int RunBatch(const BatchRun& run, const CommandLineBlock& block) {
  Batch batch;
  batch.run = &run;
  batch.block = &block;
  batch.shell = ConsoleShell(*run.console);
  batch.operation.shell = &batch.shell;
  run.console->track_numbers = block.tracks;
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
