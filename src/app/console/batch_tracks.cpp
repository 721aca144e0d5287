// The commands that read flights from an instrument.

#include <algorithm>
#include <cstdio>
#include <utility>

#include "app/console/batch_run.h"
#include "core/time_scale.h"
#include "core/track_log.h"
#include "device/job.h"
#include "files/file_io.h"
#include "files/igc_files.h"
#include "platform/path.h"

namespace skyhaul {

namespace {

constexpr const char* kSaveTitle = "Save IGC log";

CalendarTime Now(const Platform& platform) {
  const int64_t unix_time_s = platform.clock.unix_time_s(platform.clock.context);
  return CalendarFromTime(TimeFromUnix(unix_time_s));
}

// The pilot is the one of the command line, else the instrument's, else the one in the settings.
igc::HeaderTexts Header(const Batch& batch, const JobOutcome& outcome) {
  igc::HeaderTexts header = batch.run->settings->igc_header;
  if (!outcome.pilot_name.empty()) header.pilot = outcome.pilot_name;
  if (!batch.block->pilot.empty()) header.pilot = batch.block->pilot;
  return header;
}

IgcSave MakeSave(const Batch& batch, const JobOutcome& outcome) {
  const CommandLineBlock& block = *batch.block;
  IgcSave save;
  save.path = AsFolder(block.file);
  save.overwrite = block.overwrite;
  save.header = Header(batch, outcome);
  save.options = {.sign = true,
                  .may_be_signed = true,
                  .serial = "000",
                  .free_text = outcome.description,
                  .download_time = Now(*batch.run->platform),
                  .enl = batch.run->settings->igc_enl};
  save.not_over = batch.written;
  return save;
}

int SaveAsIgc(Batch& batch, const JobOutcome& outcome, const TrackLog& log, size_t /*number*/,
              std::string& path) {
  return SaveIgcAuto(batch.operation, log, MakeSave(batch, outcome), path);
}

// "flight.kml" for the first of several files, then "flight-2.kml", "flight-3.kml" and so on.
std::string NumberedPath(const std::string& path, size_t number) {
  if (number == 1) return path;
  const size_t end = path.size() - Extension(path).size();
  return path.substr(0, end) + "-" + std::to_string(number) + path.substr(end);
}

// KML for the one command; the other takes the format of the extension, OziExplorer's where that
// means nothing.
const char* TrackKeyword(const CommandLineBlock& block) {
  if (block.command == Command::kTrackLogToKml) return "kml";
  return HasUnknownExtension(block.file) ? "plt" : "";
}

int SaveAsTrackFile(Batch& batch, const JobOutcome& outcome, const TrackLog& log, size_t number,
                    std::string& path) {
  const CommandLineBlock& block = *batch.block;
  FileContents contents;
  contents.kind = FileKind::kTrack;
  contents.points = log.flight.points;
  const igc::HeaderTexts header = Header(batch, outcome);
  contents.header.pilot = header.pilot;
  contents.header.glider_type = header.glider_type;
  contents.header.glider_id = header.glider_id;
  contents.header.site = header.site;
  contents.header.competition_class = header.competition_class;
  contents.header.competition_id = header.competition_id;
  path = NumberedPath(block.file, number);
  return SaveFile(batch.operation, path, TrackKeyword(block), contents, block.overwrite);
}

// Saves one log, the number-th of the run counted from 1. Returns a negative number after a
// message, else path is the file.
using SaveLog = int (*)(Batch& batch, const JobOutcome& outcome, const TrackLog& log, size_t number,
                        std::string& path);

bool StartsEarlier(const Flight& a, const Flight& b) {
  return a.points.front().time < b.points.front().time;
}

// Saves the tracks, the oldest first. A track that cannot be saved does not keep the others from
// it. When the whole job succeeded they become the current track log, the newest at last; else what
// had arrived whole is only saved. Returns 0, or -1 when one could not be saved.
int SaveTracks(Batch& batch, JobOutcome& outcome, SaveLog save) {
  std::vector<Flight>& flights = outcome.data.flights;
  std::sort(flights.begin(), flights.end(), StartsEarlier);
  int result = 0;
  size_t number = 0;
  for (Flight& flight : flights) {
    TrackLog log;
    log.flight = std::move(flight);
    std::string path;
    if (save(batch, outcome, log, ++number, path) < 0) {
      result = -1;
    } else {
      batch.written.push_back(path);
      Print(batch, "Saved " + path + "\n");
    }
    if (outcome.result < 0) continue;
    InstallTrackLog(std::move(log.flight));
  }
  return result;
}

// An instrument without a track list can still give the one flight that is selected on it.
JobOutcome DownloadTracks(const Batch& batch) {
  const JobRequest request = MakeRequest(*batch.run, *batch.block, batch.shell, kReadTrackLog);
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

int DownloadAndSave(Batch& batch, SaveLog save) {
  JobOutcome outcome = DownloadTracks(batch);
  Print(batch, Identity(outcome));
  // Tracks that were to be joined are no flights by themselves.
  if (outcome.result < 0 && batch.block->no_split) return Finish(batch, false);
  const int saved = SaveTracks(batch, outcome, save);
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

}  // namespace

int RunIgcLog(Batch& batch) {
  // A folder whose name depends on the flight can only be found out afterwards.
  const bool depends_on_flight = batch.block->file.find('$') != std::string::npos;
  if (!depends_on_flight && CheckFolder(batch, batch.block->file, kSaveTitle) != 0) {
    return Finish(batch, false);
  }
  return DownloadAndSave(batch, SaveAsIgc);
}

int RunTrackFile(Batch& batch) {
  const CommandLineBlock& block = *batch.block;
  if (CheckTarget(batch, block.file, TrackKeyword(block), FileKind::kTrack) != 0) {
    return Finish(batch, false);
  }
  return DownloadAndSave(batch, SaveAsTrackFile);
}

int RunFlightList(Batch& batch) {
  const JobOutcome outcome = RunJob(batch, kReadFlightList);
  if (outcome.result == kNoTrackList) {
    ShowMessage(batch.operation, "This instrument has no track list", "Read GPS track list");
  }
  if (outcome.result < 0) return Finish(batch, false);
  Print(batch, Identity(outcome) + TrackListTable(outcome.data.track_list, {}));
  for (const TrackListEntry& entry : outcome.data.track_list) Tell(batch, FlightNotice(entry));
  return Finish(batch, true);
}

}  // namespace skyhaul
