#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/flight.h"
#include "core/operation.h"
#include "files/formats.h"
#include "formats/igc/write_igc.h"

namespace skyhaul {

// Reads an IGC file with ReadIgcTrack(); what was repaired or left out is told as statuses. Returns
// the number of fixes, or -1 after a message titled "Reading IGC log file"; then there are no
// points.
int LoadIgcFile(const Operation& operation, const std::string& path,
                const igc::ReadOptions& options, FileContents& contents);

struct IgcSave {
  std::string path;          // a folder's gets the standard file name
  std::string name_end;      // stands before the extension
  bool is_template = false;  // the path may hold $date and $time
  bool overwrite = false;
  igc::HeaderTexts header;
  igc::WriteOptions options;          // for logs that did not come as IGC text
  std::vector<uint32_t> selection;    // points to write, see SelectedPoints(); empty: all
  std::vector<std::string> not_over;  // files that are kept even when overwriting
};

// Call before a transfer: whether the paths of flights in a folder (which may hold $date and $time)
// stay within the longest that can be written. Returns 0, or -1 after a message titled "Save IGC
// log".
int CheckIgcFolderLength(const Operation& operation, const std::string& folder);

// The part of a folder's path that is the same for every flight: "flights/" of "flights/$date/".
std::string PlainPart(const std::string& folder);

// What SaveIgcAuto() returns when the flight itself has nothing to be saved.
inline constexpr int kNothingToSave = -2;

// Saves a flight under its name, or in its folder under the standard long name with the first free
// flight number: an instrument's own IGC text unchanged, any other flight written and signed.
// Folders whose names come from $date and $time are made when they are missing, and what is below
// them. Returns the number of positions written, with the file's path in written, or -1 or
// kNothingToSave after a message titled "Save IGC log".
int SaveIgcAuto(const Operation& operation, const Flight& flight, const IgcSave& save,
                std::string& written);

}  // namespace skyhaul
