#include "commands/open_file.h"

#include <utility>

#include "files/file_io.h"

namespace skyhaul {

namespace {

// Reads a file and sums it up. Returns 0, or -1 after a message.
int Load(const Session& session, const OpenFileRequest& request, FileContents& contents,
         FileSummary& summary) {
  const Operation operation = {.shell = session.shell};
  // The contents live outside the document until all of it is read, so a bad file changes nothing.
  if (LoadFileToOpen(operation, request.path, contents) < 0) return -1;
  if (request.only.value_or(contents.kind) != contents.kind) {
    ShowMessage(operation, request.path + " holds something else: " + KindText(contents.kind),
                "Reading file");
    return -1;
  }
  switch (contents.kind) {
    // Needs the text beside the points: header and signature are not in the fixes.
    case FileKind::kTrack:
      summary = SummariseFlight(request.path, contents.text, contents.points);
      break;
    case FileKind::kWaypoints:
      summary = SummariseWaypoints(request.path, contents.waypoints);
      break;
    case FileKind::kAirspace:
      summary = SummariseAirspaces(request.path, contents.airspaces);
      break;
  }
  return 0;
}

// Makes the contents one of the document's lists. Returns which.
ListKind Install(Document& document, FileContents contents, const std::string& path) {
  Source source = {.origin = Source::Origin::kFile, .name = path};
  const std::string title = "Opening of " + path;
  switch (contents.kind) {
    case FileKind::kWaypoints:
      ReplaceWaypoints(document, std::move(contents.waypoints), std::move(source), false, title);
      return ListKind::kWaypoints;
    case FileKind::kAirspace:
      ReplaceAirspaces(document, std::move(contents.airspaces), std::move(source), false, title);
      return ListKind::kAirspaces;
    case FileKind::kTrack:
      break;
  }
  // The instrument's own text is not kept: the file has it.
  ReplaceFlight(document, {.points = std::move(contents.points)}, std::move(source), false, title);
  return ListKind::kFlight;
}

}  // namespace

OpenFileResult OpenFile(Session& session, const OpenFileRequest& request) {
  FileContents contents;
  OpenFileResult result;
  // Summed up before installing, which moves the contents away.
  if (Load(session, request, contents, result.summary) != 0) return result;
  const ListKind kind = Install(*session.document, std::move(contents), request.path);
  result.generation = session.document->State(kind).generation;
  result.done = true;
  return result;
}

std::optional<FileSummary> SummariseFile(const Session& session, const std::string& path) {
  FileContents contents;
  FileSummary summary;
  if (Load(session, {.path = path}, contents, summary) != 0) return std::nullopt;
  return summary;
}

}  // namespace skyhaul
