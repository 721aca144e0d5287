#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "commands/session.h"

namespace skyhaul {

struct RepairFileRequest {
  std::string from;
  std::string to;
  bool overwrite = false;
};

struct RepairFileResult {
  bool done = false;                 // all flights of the file were written, or nothing was needed
  bool needed = true;                // false: the strict reader takes the file; nothing was written
  size_t lines_left_out = 0;         // of the file, without security records
  size_t fixes = 0;                  // written, in all flights
  std::vector<std::string> written;  // one path for each flight: "a.igc", "a-2.igc"
};

// Writes what is good of a damaged IGC file: its own lines, never positions made anew. Damaged
// lines are left out and told as statuses; so are security records, and a log record says that the
// result is not the recorder's. Only what the strict reader takes is written, and never onto the
// file itself. A flight that cannot be repaired is named, and does not keep others from being
// written. Several flights cannot go to a device. Failures have been said.
RepairFileResult RepairFile(const Session& session, const RepairFileRequest& request);

}  // namespace skyhaul
