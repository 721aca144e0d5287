#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/track_point.h"
#include "formats/igc/read_igc.h"
#include "formats/igc/repairs.h"

namespace skyhaul::igc {

// A line of a damaged file, without its line end.
struct FileLine {
  std::string_view text;
  uint32_t number = 0;  // counted from 1
  bool ended = true;    // false: the file ends with it, without a line end
};

// What is left of a line for reading it, as the strict reader sees it.
inline std::string_view UsefulContent(const FileLine& line) {
  return line.text.substr(0, kMaxLineLength);
}

// The date of a line that begins with "HFDTE", in the format's forms or others that are as clear
// ("HFDTE 140526", "HFDTE:140526,01"): its midnight, or 0.
uint32_t ReadAnyDate(std::string_view line);

struct MendedFlight {
  std::string text;             // the lines that are left, which the strict reader takes; CR LF
  std::vector<uint32_t> lines;  // the file's number of each of them; 0: written by this program
  std::vector<TrackPoint> points;
  std::vector<FixSource> sources;  // of the points, with the file's line numbers
};

// Leaves out of one flight's lines what the strict reader would refuse, fixes that cannot belong to
// the flight (FindFlight), and security records, which fit the whole file only. Where nine of ten
// fix lines are equally long, one of another length is damaged. Nothing is changed but an unusual
// form of the date; an A record that is missing becomes "AXSH000 repaired".
// Returns what keeps the flight from being mended, empty when nothing does: no date, no fix, two
// dates, or more than a fifth of its fixes damaged.
std::string MendFlight(std::span<const FileLine> lines, MendedFlight& flight, Repairs& repairs);

}  // namespace skyhaul::igc
