#include "files/igc_files.h"

#include <algorithm>

#include "core/text/printable.h"
#include "files/formats.h"
#include "formats/igc/names.h"
#include "platform/file.h"
#include "platform/path.h"

namespace skyhaul {

namespace {

constexpr const char* kReadTitle = "Reading IGC log file";
constexpr const char* kSaveTitle = "Save IGC log";

int Fail(const Operation& operation, const std::string& text, const char* title,
         const std::string& reason = {}) {
  ShowMessage(operation, reason.empty() ? text : text + "\n" + PrintableText(reason), title);
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
const char* IgcText(const Flight& flight, const IgcSave& save, std::string& text) {
  // Without its text the flight of such an instrument cannot be saved at all: what this program
  // would write in its place is not the recorder's.
  if (flight.instrument_igc.expected) {
    text = flight.instrument_igc.text;
    if (text.empty()) return "No log stored";
  }
  if (flight.points.empty()) return "No positions";
  if (flight.instrument_igc.expected) return nullptr;
  // Points on both sides of a gap would look like one unbroken flight.
  const auto points = SelectedPoints(flight.points, save.selection);
  if (!points.has_value()) return "No gaps in selected points allowed";
  return igc::Write(*points, save.header, save.options, text) < 0 ? "No positions" : nullptr;
}

bool HasPlaceholder(const std::string& path) {
  return igc::ExpandNameTemplate(path, 0) != path;
}

// "flights/" for "flights/$date/".
std::string FolderAbove(std::string folder) {
  while (folder.size() > 1 && NameStart(folder) == folder.size()) folder.pop_back();
  return FolderOf(folder);
}

// Makes the last folder of a path and those above it, as far as their names come from a flight. A
// folder that a person has named in full is never made: it is probably misspelt.
FileResult MakeFolders(const std::string& folder, uint32_t first_fix_time) {
  const std::string expanded = igc::ExpandNameTemplate(folder, first_fix_time);
  if (expanded == folder || IsDirectory(expanded)) return {};
  const FileResult above = MakeFolders(FolderAbove(folder), first_fix_time);
  return above.problem == FileProblem::kNone ? MakeFolder(expanded) : above;
}

int MakeMissingFolders(const Operation& operation, const IgcSave& save, const Flight& flight) {
  const std::string folder = FolderOf(save.path);
  const uint32_t start = flight.points.front().time;
  const FileResult made = MakeFolders(folder, start);
  if (made.problem == FileProblem::kNone) return 0;
  return Fail(operation, "Error making folder", kSaveTitle,
              igc::ExpandNameTemplate(folder, start) + ": " + made.reason);
}

bool Contains(const std::vector<std::string>& paths, const std::string& path) {
  return std::find(paths.begin(), paths.end(), path) != paths.end();
}

FileResult WriteUnder(const IgcSave& save, const std::string& path, const std::string& text) {
  // A file that is to be kept counts as existing: in a folder the next number is tried.
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
    case FileProblem::kTooLarge:
      return Fail(operation, "File write error", kSaveTitle, path + ": " + result.reason);
    default:
      return Fail(operation, "File open error, possibly already existing", kSaveTitle,
                  path + ": " + result.reason);
  }
}

int SaveUnderFreeNumber(const Operation& operation, const Flight& flight, const IgcSave& save,
                        std::string& path, const std::string& text) {
  const std::string folder = path;
  const bool own = flight.instrument_igc.expected;
  // "xxx" because the text may be of any maker; "xsh" is what this program writes.
  const std::string manufacturer = own ? "xxx" : "xsh";
  // A text without an A record names no recorder.
  const bool known = own && !flight.instrument_igc.serial.empty();
  const std::string serial = known ? flight.instrument_igc.serial : "000";
  for (int number = 1; number <= igc::kMaxFlightNumber; ++number) {
    path = WithNameEnd(
        folder + igc::LongName(flight.points.front().time, manufacturer, serial, number),
        save.name_end);
    // $date and $time are replaced by now, and the name is known.
    if (PathLength(path) > kMaxWrittenPath)
      return Fail(operation, "Too long file name", kSaveTitle, path);
    const FileResult result = WriteUnder(save, path, text);
    switch (result.problem) {
      case FileProblem::kNone:
        return 0;
      case FileProblem::kExists:
        continue;
      case FileProblem::kOther:
      case FileProblem::kTooLarge:
        return Fail(operation, "File write error", kSaveTitle, path + ": " + result.reason);
      // A folder that refuses one number refuses all of them.
      default:
        return Fail(operation, "File open error", kSaveTitle, path + ": " + result.reason);
    }
  }
  return Fail(operation, "No free flight number available", kSaveTitle);
}

}  // namespace

int LoadIgcFile(const Operation& operation, const std::string& path,
                const igc::ReadOptions& options, FileContents& contents) {
  contents = {.kind = FileKind::kTrack, .options = options};
  if (PathLength(path) > kMaxReadPath) return Fail(operation, "File name too long", kReadTitle);
  const FileResult read = ReadWholeFile(path, contents.text);
  if (read.problem != FileProblem::kNone) {
    return Fail(operation, ReadFailure(read.problem), kReadTitle, path + ": " + read.reason);
  }
  if (contents.text.empty()) return Fail(operation, "File is empty", kReadTitle, path);
  std::string message;
  const int count = ReadIgcTrack(contents.text, contents, message);
  if (count < 0) return Fail(operation, message, kReadTitle, path);
  // The first note names the file, because many are looked at in one run.
  std::string start = PrintableText(path) + ": ";
  for (const std::string& note : contents.notes) {
    ShowStatus(operation, start.append(note));
    start.clear();
  }
  return count;
}

std::string PlainPart(const std::string& folder) {
  return HasPlaceholder(folder) ? PlainPart(FolderAbove(folder)) : folder;
}

int CheckIgcFolderLength(const Operation& operation, const std::string& folder) {
  // Dates and times always have the same length, and a serial number has at most three characters.
  const std::string longest =
      igc::ExpandNameTemplate(folder, 0) + igc::LongName(0, "xsh", "000", 1);
  if (PathLength(longest) <= kMaxWrittenPath) return 0;
  return Fail(operation, "Too long file name", kSaveTitle, folder);
}

int SaveIgcAuto(const Operation& operation, const Flight& flight, const IgcSave& save,
                std::string& written) {
  std::string text;
  if (const char* wrong = IgcText(flight, save, text)) {
    Fail(operation, wrong, kSaveTitle);
    return kNothingToSave;
  }
  std::string path =
      save.is_template ? igc::ExpandNameTemplate(save.path, flight.points.front().time) : save.path;
  // A path that ends in a separator is a folder.
  const bool named = NameStart(path) < path.size();
  if (named) path = WithNameEnd(path, save.name_end);
  if (PathLength(path) > kMaxWrittenPath) {
    return Fail(operation, "Too long file name", kSaveTitle, save.path);
  }
  if (save.is_template && MakeMissingFolders(operation, save, flight) != 0) return -1;
  const int saved = named ? SaveUnderFixedName(operation, save, path, text)
                          : SaveUnderFreeNumber(operation, flight, save, path, text);
  if (saved != 0) return -1;
  // Set only now, so that a caller never names a file that is not there.
  written = path;
  const int count = static_cast<int>(flight.points.size());
  ShowStatus(operation, std::to_string(count) + " positions written");
  return count;
}

}  // namespace skyhaul
