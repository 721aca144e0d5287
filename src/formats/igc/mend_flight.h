#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "core/track_point.h"
#include "formats/igc/flight_draft.h"
#include "formats/igc/read_igc.h"
#include "formats/igc/repairs.h"

namespace skyhaul::igc {

struct MendedFlight {
  std::string text;             // the lines that are left, which the strict reader takes; CR LF
  std::vector<uint32_t> lines;  // the file's number of each of them; 0: written by this program
  std::vector<TrackPoint> points;
  std::vector<FixSource> sources;  // of the points, with the file's line numbers
  Repairs repairs;
};

// Leaves out of one flight's lines what the strict reader would refuse, fixes that cannot belong to
// the flight (FindFlight), and security records, which fit the whole file only. A fix line whose
// length is not that of the others is damaged. Nothing is changed but an unusual form of the date
// and an I record of more than 80 characters, which keeps as many entries as fit; an A record that
// is missing becomes "AXSH000 repaired". What is done is added to flight.repairs.
// Returns what keeps the flight from being mended, empty when nothing does: no date, no fix, no
// usual length of fix lines, or more than a fifth of its fixes damaged.
std::string MendFlight(std::span<const FileLine> lines, MendedFlight& flight);

}  // namespace skyhaul::igc
