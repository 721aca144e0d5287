#include "files/file_io.h"

#include <utility>

#include "core/text/letter_case.h"
#include "core/text/printable.h"
#include "files/igc_files.h"
#include "platform/file.h"

namespace skyhaul {

namespace {

constexpr const char* kReadTitle = "Reading file";
constexpr const char* kWriteTitle = "Writing file";
constexpr size_t kMostNotes = 20;

int Fail(const Operation& operation, const std::string& text, const char* title) {
  ShowMessage(operation, text, title);
  return -1;
}

// All damage, and first: who overlooks it flies by an outline that is wrong. Of the rest at most
// kMostNotes, because a file full of strange lines should not bury the other messages. The first
// note names the file, because many are read in one run.
void ShowNotes(const Operation& operation, const std::string& path, const FileContents& contents) {
  std::string start = PrintableText(path) + ": ";
  const auto show = [&](const std::string& note) {
    ShowStatus(operation, start + note);
    start.clear();
  };
  for (const std::string& damage : contents.damage) show(damage);
  for (size_t i = 0; i < contents.notes.size() && i < kMostNotes; ++i) show(contents.notes[i]);
  if (contents.notes.size() <= kMostNotes) return;
  ShowStatus(operation, "... and " + std::to_string(contents.notes.size() - kMostNotes) +
                            " more lines of that file");
}

size_t Count(const FileContents& contents) {
  switch (contents.kind) {
    case FileKind::kWaypoints:
      return contents.waypoints.size();
    case FileKind::kAirspace:
      return contents.airspaces.size();
    case FileKind::kTrack:
      break;
  }
  return contents.points.size();
}

}  // namespace

int LoadFile(const Operation& operation, const std::string& path, const igc::ReadOptions& options,
             FileContents& contents) {
  contents = {.options = options};
  std::string text;
  const FileResult read = ReadWholeFile(path, text);
  if (read.problem != FileProblem::kNone) {
    return Fail(operation, "Error opening file\n" + PrintableText(path) + ": " + read.reason,
                kReadTitle);
  }
  // Said by itself, since "no known format" would send a person to look in the wrong place.
  if (text.empty()) return Fail(operation, "File is empty\n" + PrintableText(path), kReadTitle);
  std::string message;
  const FileFormat* format = FormatToRead(path, text, message);
  if (format == nullptr) return Fail(operation, message, kReadTitle);
  contents.kind = format->kind;
  const int count = format->read(text, contents, message);
  if (count < 0) return Fail(operation, message + "\n" + PrintableText(path), kReadTitle);
  // Only tracks are saved as the text that they came as.
  if (contents.kind == FileKind::kTrack) contents.text = std::move(text);
  ShowNotes(operation, path, contents);
  return count;
}

int SaveFile(const Operation& operation, const std::string& path, std::string_view keyword,
             const FileContents& contents, bool overwrite) {
  std::string message;
  const FileFormat* format = FormatToWrite(path, keyword, contents.kind, message);
  if (format == nullptr) return Fail(operation, message, kWriteTitle);
  // The text is complete before the file is touched, so that a fault costs no file of the same
  // name.
  const FileResult written = WriteWholeFile(path, format->write(contents),
                                            overwrite ? IfExists::kReplace : IfExists::kRefuse);
  switch (written.problem) {
    case FileProblem::kNone:
      return static_cast<int>(Count(contents));
    case FileProblem::kExists:
      return Fail(operation, PrintableText(path) + " exists already", kWriteTitle);
    default:
      return Fail(operation, "File write error\n" + PrintableText(path) + ": " + written.reason,
                  kWriteTitle);
  }
}

int LoadFileToOpen(const Operation& operation, const std::string& path,
                   const igc::ReadOptions& options, FileContents& contents) {
  return EqualIgnoringCase(Extension(path), ".igc")
             ? LoadIgcFile(operation, path, options, contents)
             : LoadFile(operation, path, options, contents);
}

int CheckKind(const Operation& operation, const std::string& path, const FileContents& contents,
              std::optional<FileKind> only) {
  if (only.value_or(contents.kind) == contents.kind) return 0;
  return Fail(operation, PrintableText(path) + " holds something else: " + KindText(contents.kind),
              kReadTitle);
}

}  // namespace skyhaul
