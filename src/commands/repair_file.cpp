#include "commands/repair_file.h"

#include "core/text/digits.h"
#include "core/version.h"
#include "files/formats.h"
#include "formats/igc/read_igc.h"
#include "formats/igc/read_track.h"
#include "platform/file.h"

namespace skyhaul {

namespace {

constexpr const char* kTitle = "Repairing file";

int Fail(const Session& session, const std::string& text) {
  ShowMessage(Operation{.shell = session.shell}, text, kTitle);
  return -1;
}

// "a.igc" for the first flight, then "a-2.igc".
std::string NumberedPath(const std::string& path, size_t number) {
  return number == 1 ? path : WithNameEnd(path, "-" + std::to_string(number));
}

// The last line of a repaired flight; a checker finds no security record behind it.
std::string LogRecord(size_t lines_left_out) {
  return "LXSH Repaired by Skyhaul " + std::to_string(kVersionNumber / 100) + '.' +
         PaddedNumber(kVersionNumber % 100, 2) +
         ", not original: " + igc::LeftOutText(lines_left_out) + "\r\n";
}

int CheckTargets(const Session& session, const RepairFileRequest& request, size_t flights) {
  for (size_t number = 1; number <= flights; ++number) {
    const std::string path = NumberedPath(request.to, number);
    // What was left out may still be of use to another program or person.
    if (SameFile(path, request.from)) {
      return Fail(session, path + " is the damaged file itself, which is kept");
    }
    if (!request.overwrite && FileExists(path)) return Fail(session, path + " exists already");
  }
  return 0;
}

int WriteFlight(const Session& session, const RepairFileRequest& request, const std::string& text,
                RepairFileResult& result) {
  const std::string path = NumberedPath(request.to, result.written.size() + 1);
  std::vector<TrackPoint> points;
  std::string message;
  // What is written is read by programs that are as strict.
  const int fixes = igc::Read(text, points, message);
  if (fixes < 0) return Fail(session, message + "\n" + path);
  const FileResult written =
      WriteWholeFile(path, text, request.overwrite ? IfExists::kReplace : IfExists::kRefuse);
  if (written.problem != FileProblem::kNone) {
    return Fail(session, "File write error\n" + path + ": " + written.reason);
  }
  result.fixes += static_cast<size_t>(fixes);
  result.written.push_back(path);
  return 0;
}

// Repairs a file that the strict reader refused with that message.
int Repair(const Session& session, const RepairFileRequest& request, const std::string& original,
           const std::string& strict_message, RepairFileResult& result) {
  igc::LenientFile file;
  const std::string reason = igc::ReadLenient(original, file);
  if (!reason.empty()) {
    return Fail(session,
                strict_message + "\nIt cannot be repaired: " + reason + "\n" + request.from);
  }
  if (CheckTargets(session, request, file.flights.size()) != 0) return -1;
  igc::Reading reading = igc::DescribeRepairs(strict_message, file);
  // Here the further flights are not passed over.
  reading.flights = 1;
  for (const std::string& note : igc::ReadingNotes(reading)) {
    ShowStatus(Operation{.shell = session.shell}, note);
  }
  result.lines_left_out = igc::LinesLeftOut(file.repairs);
  for (const igc::MendedFlight& flight : file.flights) {
    const std::string text = flight.text + LogRecord(result.lines_left_out);
    if (WriteFlight(session, request, text, result) != 0) return -1;
  }
  return 0;
}

}  // namespace

RepairFileResult RepairFile(const Session& session, const RepairFileRequest& request) {
  RepairFileResult result;
  std::string text;
  const FileResult read = ReadWholeFile(request.from, text);
  if (read.problem != FileProblem::kNone) {
    Fail(session, "Error opening file\n" + request.from + ": " + read.reason);
    return result;
  }
  std::vector<TrackPoint> points;
  std::string message;
  result.needed = igc::Read(text, points, message) < 0;
  result.done = !result.needed || Repair(session, request, text, message, result) == 0;
  return result;
}

}  // namespace skyhaul
