#include "commands/repair_file.h"

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

// The last line of a repaired flight; a checker finds no security record behind it.
std::string LogRecord(const igc::MendedFlight& flight) {
  return "LXSH Repaired by Skyhaul " + VersionText() +
         ", not original: " + igc::LeftOutText(igc::LinesLeftOut(flight.repairs)) + "\r\n";
}

int CheckTargets(const Session& session, const RepairFileRequest& request, size_t flights) {
  // Only a regular file is the same as itself. "/dev/null-2" would be a file among the devices.
  if (flights > 1 && FileExists(request.to) && !SameFile(request.to, request.to)) {
    return Fail(session, request.to + " is no file, and cannot take " + std::to_string(flights) +
                             " flights");
  }
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

// The strict reader has taken the flight, and passes over the log record.
int WriteFlight(const Session& session, const RepairFileRequest& request,
                const igc::MendedFlight& flight, RepairFileResult& result) {
  const std::string path = NumberedPath(request.to, result.written.size() + 1);
  const FileResult written =
      WriteWholeFile(path, flight.text + LogRecord(flight),
                     request.overwrite ? IfExists::kReplace : IfExists::kRefuse);
  if (written.problem != FileProblem::kNone) {
    return Fail(session, "File write error\n" + path + ": " + written.reason);
  }
  result.fixes += flight.points.size();
  result.written.push_back(path);
  return 0;
}

// Says which flights of the file are not in the result. Returns -1 when there are any.
int NameRefused(const Session& session, const RepairFileRequest& request,
                const std::vector<std::string>& refused) {
  if (refused.empty()) return 0;
  std::string text;
  for (const std::string& flight : refused) text.append(flight).append("\n");
  return Fail(session, text + request.from);
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
  // Here the further flights are not passed over, and those that are lost are an error.
  reading.flights = 1;
  reading.refused.clear();
  for (const std::string& note : igc::ReadingNotes(reading)) {
    ShowStatus(Operation{.shell = session.shell}, note);
  }
  result.lines_left_out = igc::LinesLeftOut(file.repairs);
  for (const igc::MendedFlight& flight : file.flights) {
    if (WriteFlight(session, request, flight, result) != 0) return -1;
  }
  return NameRefused(session, request, file.refused);
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
