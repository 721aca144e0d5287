#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/track_point.h"

namespace skyhaul::igc {

// How much of a line counts.
inline constexpr size_t kMaxLineLength = 80;

// Where a fix came from.
struct FixSource {
  uint32_t line = 0;  // of the text, counted from 1
  bool valid = true;  // false: the record is not marked A: 2D, or no GPS data at all
};

// Reads the fixes of an IGC file's text. A line ends at LF, a CR ends its useful content, and at
// most 80 characters of it are looked at. A file is held to the format more strictly than an
// instrument is: one bad field refuses the file, because a flight with a wrong fix is worse than
// one that is not read. Fixes that repeat the second before them are dropped; only the first keeps
// its milliseconds. Times never decrease by an hour or more: a time of day that does is the next
// day's. Returns the number of fixes, or -1 with a message such as "Format error on line 12"; then
// points is empty. sources, when given, becomes as long as points.
int Read(std::string_view text, std::vector<TrackPoint>& points, std::string& message,
         std::vector<FixSource>* sources = nullptr);

}  // namespace skyhaul::igc
