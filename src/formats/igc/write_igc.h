#pragma once

#include <span>
#include <string>

#include "core/time_scale.h"
#include "core/track_point.h"
#include "core/waypoint_record.h"

namespace skyhaul::igc {

// What the header of an IGC file says about the flight; empty texts leave their headers empty.
struct HeaderTexts {
  std::string pilot = {};
  std::string glider_type = {};
  std::string glider_id = {};
  std::string competition_class = {};
  std::string site = {};
  std::string competition_id = {};
};

struct WriteOptions {
  bool sign = false;
  bool may_be_signed = false;  // the track came from an instrument or a checked file, unchanged
  std::string serial = {};     // after the manufacturer code in the A record
  std::string free_text = {};  // after a blank in the A record; the blank is always there
  CalendarTime download_time = {};
  bool enl = false;                     // add each fix's extra value
  const DeclaredRoute* task = nullptr;  // declared when it has at least one point
};

// Builds the text of an IGC file, lines ended by CR LF, with the security record when sign and
// may_be_signed are both set. Altitudes that do not fit their five characters and extra values that
// do not fit three digits are written as the nearest value that does; docs/igc.md has the limits.
// Line ends and NULs inside texts become blanks, so that a pilot's name cannot forge a record.
// Returns the length of text, or -1 when there are no points.
int Write(std::span<const TrackPoint> points, const HeaderTexts& header,
          const WriteOptions& options, std::string& text);

}  // namespace skyhaul::igc
