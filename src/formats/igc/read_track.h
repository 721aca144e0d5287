#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/track_point.h"
#include "formats/igc/flyable.h"
#include "formats/igc/header.h"
#include "formats/igc/read_lenient.h"
#include "formats/igc/repairs.h"

namespace skyhaul::igc {

struct ReadOptions {
  bool strict = false;            // only the strict reader
  bool leave_out_unknown = true;  // fixes without a place, see LeaveOutUnknownPlaces()
  bool leave_out_marked = false;  // all fixes that are not marked A, see LeaveOutMarked()
};

// How a file was read.
struct Reading {
  std::string strict_message;  // why the strict reader refused; empty: it did not
  Repairs repairs;
  std::vector<std::string> refused;  // flights of the file that could not be repaired
  size_t flights = 1;                // that could be read; the first one is taken
  uint32_t second_flight_line = 0;   // of the file, when there is one
  LeftOutFixes left_out;             // without a place
  LeftOutFixes marked;               // left out for their mark alone
};

struct Track {
  std::vector<TrackPoint> points;
  Header header;
  Reading reading;
};

// Reads an IGC file for looking at, scoring or converting it: strictly, and when that refuses,
// leniently; then fixes are left out as the options say. Returns the number of fixes, or -1 with a
// message that begins with the strict reader's; then track has no points.
int ReadTrack(std::string_view text, const ReadOptions& options, Track& track,
              std::string& message);

// What the lenient reader did to a file.
Reading DescribeRepairs(const std::string& strict_message, const LenientFile& file);

// What a person has to be told, a line each; none when the strict reader took the file whole.
std::vector<std::string> ReadingNotes(const Reading& reading);

// "12 fixes without a position, the first on line 345"; empty for none.
std::string UnknownPlacesText(const LeftOutFixes& left_out);

}  // namespace skyhaul::igc
