#include "files/igc_files.h"

#include <algorithm>
#include <cstdio>

#include "formats/igc/names.h"
#include "formats/igc/read_igc.h"
#include "platform/file.h"
#include "platform/path.h"

namespace skyhaul {

namespace {

constexpr const char* kReadTitle = "Reading IGC log file";
constexpr const char* kSaveTitle = "Save IGC log";

int Fail(const Operation& operation, const std::string& text, const char* title,
         const std::string& reason = {}) {
  ShowMessage(operation, reason.empty() ? text : text + "\n" + reason, title);
  return -1;
}

const char* ReadFailure(FileProblem problem) {
  switch (problem) {
    case FileProblem::kMissing:
    case FileProblem::kDenied:
      return "Error opening IGC Log File";
    case FileProblem::kIsDirectory:
      return "Error opening file";
    default:
      return "IGC track log file read error";
  }
}

// The text to save, or what is wrong.
const char* IgcText(const TrackLog& log, const IgcSave& save, std::string& text) {
  if (log.flight.instrument_igc.expected) {
    text = log.flight.instrument_igc.text;
    return text.empty() ? "No log stored" : nullptr;
  }
  std::vector<TrackPoint> points;
  if (SelectedTrackPoints(log, points) != 0) return "No gaps in selected points allowed";
  return igc::Write(points, save.header, save.options, text) < 0 ? "No positions" : nullptr;
}

bool Contains(const std::vector<std::string>& paths, const std::string& path) {
  return std::find(paths.begin(), paths.end(), path) != paths.end();
}

FileResult WriteUnder(const IgcSave& save, const std::string& path, const std::string& text) {
  const bool replace = save.overwrite && !Contains(save.not_over, path);
  return WriteWholeFile(path, text, replace ? IfExists::kReplace : IfExists::kRefuse);
}

int SaveUnderFixedName(const Operation& operation, const IgcSave& save, const std::string& path,
                       const std::string& text) {
  const FileResult result = WriteUnder(save, path, text);
  switch (result.problem) {
    case FileProblem::kNone:
      return 0;
    case FileProblem::kOther:
      return Fail(operation, "File write error", kSaveTitle, result.reason);
    default:
      return Fail(operation, "File open error, possibly already existing", kSaveTitle,
                  result.reason);
  }
}

int SaveUnderFreeNumber(const Operation& operation, const TrackLog& log, const IgcSave& save,
                        std::string& path, const std::string& text) {
  const std::string folder = path;
  const bool own = log.flight.instrument_igc.expected;
  const std::string manufacturer = own ? "xxx" : "xsh";
  const std::string serial = own ? log.flight.instrument_igc.serial : "000";
  for (int number = 1; number <= igc::kMaxFlightNumber; ++number) {
    path = folder + igc::LongName(log.flight.points.front().time, manufacturer, serial, number);
    if (PathLength(path) > kMaxWrittenPath)
      return Fail(operation, "Too long file name", kSaveTitle, path);
    const FileResult result = WriteUnder(save, path, text);
    switch (result.problem) {
      case FileProblem::kNone:
        return 0;
      case FileProblem::kExists:
        continue;
      case FileProblem::kOther:
        return Fail(operation, "File write error", kSaveTitle, result.reason);
      default:
        return Fail(operation, "File open error", kSaveTitle, path + ": " + result.reason);
    }
  }
  return Fail(operation, "No free flight number available", kSaveTitle);
}

}  // namespace

int LoadIgcFile(const Operation& operation, const std::string& path, std::string& text,
                std::vector<TrackPoint>& points) {
  points.clear();
  if (PathLength(path) > kMaxReadPath) return Fail(operation, "File name too long", kReadTitle);
  const FileResult read = ReadWholeFile(path, text);
  if (read.problem != FileProblem::kNone) {
    return Fail(operation, ReadFailure(read.problem), kReadTitle, path + ": " + read.reason);
  }
  if (text.empty()) return Fail(operation, "File is empty", kReadTitle, path);
  std::string message;
  const int count = igc::Read(text, points, message);
  return count < 0 ? Fail(operation, message, kReadTitle, path) : count;
}

int ReadIgcFile(const Operation& operation, const std::string& base_path) {
  std::string text;
  std::vector<TrackPoint> points;
  const int count = LoadIgcFile(operation, base_path + ".igc", text, points);
  if (count > 0) InstallTrackLog({.points = std::move(points)});
  return count;
}

int SaveIgcAuto(const Operation& operation, const TrackLog& log, const IgcSave& save,
                std::string& written) {
  if (log.flight.points.empty()) return Fail(operation, "No positions", kSaveTitle);
  std::string path = igc::ExpandNameTemplate(save.path, log.flight.points.front().time);
  if (PathLength(path) > kMaxWrittenPath) {
    return Fail(operation, "Too long file name", kSaveTitle, save.path);
  }
  std::string text;
  if (const char* wrong = IgcText(log, save, text)) return Fail(operation, wrong, kSaveTitle);
  const bool named = NameStart(path) < path.size();
  const int saved = named ? SaveUnderFixedName(operation, save, path, text)
                          : SaveUnderFreeNumber(operation, log, save, path, text);
  if (saved != 0) return -1;
  written = path;
  const int count = static_cast<int>(log.flight.points.size());
  char status[40];
  std::snprintf(status, sizeof status, "%d positions written", count);
  ShowStatus(operation, status);
  return count;
}

}  // namespace skyhaul
