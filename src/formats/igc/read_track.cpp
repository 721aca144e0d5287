#include "formats/igc/read_track.h"

#include <algorithm>
#include <utility>

#include "formats/igc/read_igc.h"

namespace skyhaul::igc {

namespace {

// Takes the first flight of a file that was refused with that message.
int ReadDamaged(std::string_view text, Track& track, std::vector<FixSource>& sources,
                std::string& message) {
  LenientFile file;
  const std::string reason = ReadLenient(text, file);
  if (!reason.empty()) {
    message += "\nIt cannot be repaired: " + reason;
    return -1;
  }
  track.reading = DescribeRepairs(message, file);
  MendedFlight& flight = file.flights.front();
  // A byte order mark or bare CRs would hide header records.
  track.header = ReadHeader(flight.text);
  // The A record of a flight that has none names this program, which has recorded nothing.
  if (flight.lines.front() == 0) {
    track.header.manufacturer.clear();
    track.header.serial.clear();
    track.header.remark.clear();
  }
  track.points = std::move(flight.points);
  sources = std::move(flight.sources);
  return 0;
}

// "12 fixes marked V, the first on line 345"
std::string LeftOutFixesText(const LeftOutFixes& left_out, const char* what) {
  if (left_out.count == 0) return {};
  const std::string line = std::to_string(left_out.first_line);
  if (left_out.count == 1) return std::string("1 fix ") + what + ", on line " + line;
  return std::to_string(left_out.count) + " fixes " + what + ", the first on line " + line;
}

}  // namespace

int ReadTrack(std::string_view text, const ReadOptions& options, Track& track,
              std::string& message) {
  track = {};
  std::vector<FixSource> sources;
  if (Read(text, track.points, message, &sources) >= 0) {
    track.header = ReadHeader(text);
  } else if (options.strict || ReadDamaged(text, track, sources, message) < 0) {
    return -1;
  }
  const size_t all = track.points.size();
  if (options.leave_out_unknown) {
    track.reading.left_out = LeaveOutUnknownPlaces(track.points, sources);
  }
  if (options.leave_out_marked) track.reading.marked = LeaveOutMarked(track.points, sources);
  if (!track.points.empty()) return static_cast<int>(track.points.size());
  message = "No positions: all " + std::to_string(all) + " fixes are marked V" +
            (track.reading.marked.count == 0 ? " and have none" : "");
  return -1;
}

Reading DescribeRepairs(const std::string& strict_message, const LenientFile& file) {
  Reading reading = {.strict_message = strict_message,
                     .repairs = file.repairs,
                     .refused = file.refused,
                     .flights = file.flights.size()};
  if (reading.flights > 1) {
    const std::vector<uint32_t>& lines = file.flights[1].lines;
    // An A record of our own has no line.
    reading.second_flight_line = lines.front() != 0 ? lines.front() : lines[1];
  }
  return reading;
}

std::vector<std::string> ReadingNotes(const Reading& reading) {
  std::vector<std::string> notes;
  if (!reading.strict_message.empty()) {
    notes.push_back(reading.strict_message + "; the file was read with repairs:");
  }
  for (const Repair& repair : reading.repairs) notes.push_back(RepairText(repair));
  notes.insert(notes.end(), reading.refused.begin(), reading.refused.end());
  if (reading.flights > 1) {
    notes.push_back("The file holds " + std::to_string(reading.flights) +
                    " flights, the second from line " + std::to_string(reading.second_flight_line) +
                    " on; the first one counts");
  }
  if (reading.left_out.count > 0)
    notes.push_back("Left out: " + UnknownPlacesText(reading.left_out));
  if (reading.marked.count > 0) {
    notes.push_back("Left out, because all fixes of the result are marked A: " +
                    LeftOutFixesText(reading.marked, "marked V"));
  }
  return notes;
}

std::string UnknownPlacesText(const LeftOutFixes& left_out) {
  return LeftOutFixesText(left_out, "without a position");
}

}  // namespace skyhaul::igc
