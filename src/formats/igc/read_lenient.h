#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "formats/igc/mend_flight.h"
#include "formats/igc/repairs.h"

namespace skyhaul::igc {

// What could be made of a file that the strict reader refuses.
struct LenientFile {
  std::vector<MendedFlight> flights;  // in the order of the file, at least one
  Repairs repairs;                    // of all flights
  std::vector<std::string> refused;   // "The flight from line 345 on is left out: ..."
};

// Reads an IGC file that is damaged, or that departs from the format in a way that leaves no doubt:
// lines that cannot be right are left out (MendFlight), and what is left is read by the strict
// reader. An A record that a header follows begins another flight, and so do, after a pause of an
// hour, a date that is neither the flight's nor that of the next day, and a flight's header without
// its A record; without the pause they contradict what stands before them. text may have LF, CR LF,
// CR or any mixture as line ends, a byte order mark, and end marks of DOS at the beginning of
// lines. Returns an empty text, or why nothing is read: wrong is never better than refused.
std::string ReadLenient(std::string_view text, LenientFile& file);

// Whether a text has a line that begins like a fix and one that begins like a date.
bool LooksLike(std::string_view text);

}  // namespace skyhaul::igc
