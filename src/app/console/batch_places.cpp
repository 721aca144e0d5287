// The commands for waypoints and airspace, and conversions between files.

#include <string>
#include <utility>
#include <vector>

#include "app/console/batch_run.h"
#include "files/file_io.h"

namespace skyhaul {

namespace {

// The geographic command has a form of its own; the other takes the one of the extension,
// OziExplorer's where that means nothing.
const char* WaypointKeyword(const CommandLineBlock& block) {
  if (block.command == Command::kDownloadGeographicWaypoints) return "geo";
  return HasUnknownExtension(block.file) ? "ozi" : "";
}

int LoadKind(const Batch& batch, const std::string& path, FileKind kind, FileContents& contents) {
  if (LoadFile(batch.operation, path, contents) < 0) return -1;
  if (contents.kind == kind) return 0;
  ShowMessage(batch.operation, path + " holds something else: " + KindText(contents.kind),
              "Reading file");
  return -1;
}

// Says how many records of how many have gone to the instrument, and ends the run: it is only done
// when all of them have.
int FinishUpload(Batch& batch, const JobOutcome& outcome, size_t count, const char* what) {
  Print(batch, Identity(outcome) + std::to_string(outcome.data.sent) + " of " +
                   std::to_string(count) + " " + what + " sent\n");
  return Finish(batch, outcome.result >= 0 && outcome.data.sent == count);
}

std::string WithKmlExtension(const std::string& path) {
  return path.substr(0, path.size() - Extension(path).size()) + ".kml";
}

}  // namespace

int RunReadWaypoints(Batch& batch) {
  const CommandLineBlock& block = *batch.block;
  const char* keyword = WaypointKeyword(block);
  if (CheckTarget(batch, block.file, keyword, FileKind::kWaypoints) != 0) {
    return Finish(batch, false);
  }
  const JobOutcome outcome = RunJob(batch, kReadWaypoints);
  Print(batch, Identity(outcome));
  if (outcome.result < 0) return Finish(batch, false);
  if (outcome.data.waypoints.empty()) {
    ShowMessage(batch.operation, "The instrument holds no waypoints", "Read GPS waypoints");
    return Finish(batch, false);
  }
  FileContents contents;
  contents.waypoints = UnfitWaypoints(outcome.data.waypoints);
  const int saved = SaveFile(batch.operation, block.file, keyword, contents, block.overwrite);
  if (saved < 0) return Finish(batch, false);
  batch.written.push_back(block.file);
  Print(batch, std::to_string(saved) + " waypoints saved in " + block.file + "\n");
  return Finish(batch, true);
}

int RunWriteWaypoints(Batch& batch) {
  FileContents contents;
  if (LoadKind(batch, batch.block->file, FileKind::kWaypoints, contents) != 0) {
    return Finish(batch, false);
  }
  JobData data;
  data.waypoints_to_send = std::move(contents.waypoints);
  const size_t count = data.waypoints_to_send.size();
  const JobOutcome outcome = RunJob(batch, kWriteWaypoints, std::move(data));
  return FinishUpload(batch, outcome, count, "waypoints");
}

int RunWriteAirspaces(Batch& batch) {
  FileContents contents;
  if (LoadKind(batch, batch.block->file, FileKind::kAirspace, contents) != 0) {
    return Finish(batch, false);
  }
  JobData data;
  data.airspaces = std::move(contents.airspaces);
  const size_t count = data.airspaces.size();
  const JobOutcome outcome = RunJob(batch, kUploadCtr, std::move(data));
  return FinishUpload(batch, outcome, count, "airspaces");
}

int RunConvertWaypoints(Batch& batch) {
  const CommandLineBlock& block = *batch.block;
  FileContents contents;
  const bool read = LoadKind(batch, block.waypoint_source, FileKind::kWaypoints, contents) == 0;
  const bool done = read && SaveFile(batch.operation, block.waypoint_destination, "", contents,
                                     block.overwrite) >= 0;
  if (done) batch.written.push_back(block.waypoint_destination);
  const char* result = done ? "Waypoint file converted" : "Waypoint file conversion failed";
  Print(batch, std::string(result) + "\n");
  if (!done) ShowMessage(batch.operation, result, "Converting waypoint file");
  return Finish(batch, done);
}

int RunConvertToKml(Batch& batch) {
  const std::string to = WithKmlExtension(batch.block->file);
  const int fixes =
      ConvertFile(batch.operation, batch.block->file, to, "kml", batch.block->overwrite);
  if (fixes < 0) return Finish(batch, false);
  batch.written.push_back(to);
  Print(batch, "Saved " + to + "\n");
  return Finish(batch, true);
}

}  // namespace skyhaul
