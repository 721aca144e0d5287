#include "commands/open_file.h"

#include <utility>

#include "commands/read_options.h"
#include "files/file_io.h"

namespace skyhaul {

namespace {

FileSummary SummariseTrack(const std::string& path, const FileContents& contents) {
  FlightSummary summary = SummariseFlight(path, contents.text, contents.points);
  // Of a repaired file the header is that of the repaired text.
  summary.header = contents.header;
  summary.reading = contents.reading;
  return summary;
}

// Reads a file and sums it up. Returns 0, or -1 after a message.
int Load(const Session& session, const OpenFileRequest& request, FileContents& contents,
         FileSummary& summary) {
  const Operation operation = {.shell = session.shell};
  // The contents live outside the document until all of it is read, so a bad file changes nothing.
  const igc::ReadOptions options = ReadOptionsOf(session, request.strict);
  if (LoadFileToOpen(operation, request.path, options, contents) < 0) return -1;
  if (CheckKind(operation, request.path, contents, request.only) != 0) return -1;
  switch (contents.kind) {
    // Needs the text beside the points: header and signature are not in the fixes.
    case FileKind::kTrack:
      summary = SummariseTrack(request.path, contents);
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

std::optional<FileSummary> SummariseFile(const Session& session, const std::string& path,
                                         bool strict) {
  FileContents contents;
  FileSummary summary;
  if (Load(session, {.path = path, .strict = strict}, contents, summary) != 0) return std::nullopt;
  return summary;
}

}  // namespace skyhaul
