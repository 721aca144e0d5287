#pragma once

#include <string>
#include <vector>

#include "core/operation.h"
#include "core/track_log.h"
#include "formats/igc/write_igc.h"

namespace skyhaul {

// Reads an IGC file into points. Returns their number, or -1 after a message titled "Reading IGC
// log file"; then points is empty. text is the whole file.
int LoadIgcFile(const Operation& operation, const std::string& path, std::string& text,
                std::vector<TrackPoint>& points);

// Reads base_path + ".igc" as the new current track log, which stays as it is when that fails.
// Returns the number of fixes, or -1 after a message.
int ReadIgcFile(const Operation& operation, const std::string& base_path);

struct IgcSave {
  std::string path;  // may hold $date and $time; a folder's gets the standard file name
  bool overwrite = false;
  igc::HeaderTexts header;
  igc::WriteOptions options;          // for logs that did not come as IGC text
  std::vector<std::string> not_over;  // files that are kept even when overwriting
};

// Saves a track log under its name, or in its folder under the standard long name with the first
// free flight number: an instrument's own IGC text unchanged, any other log written and signed.
// Returns the number of positions written, with the file's path in written, or -1 after a message
// titled "Save IGC log".
int SaveIgcAuto(const Operation& operation, const TrackLog& log, const IgcSave& save,
                std::string& written);

}  // namespace skyhaul
