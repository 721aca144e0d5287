#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/track_point.h"

namespace skyhaul::igc {

// Why a line of an instrument's IGC text is refused. The numbers are shown to the person.
enum LineFault : int {
  kBadARecord = 1,       // shorter than 7 characters
  kBadManufacturer = 2,  // not three letters or digits
  kBadSerial = 3,        // neither three letters or digits, nor absent
  kBadDate = 4,          // fewer than 6 characters, or not a day, month and year
  kShortBRecord = 5,     // shorter than 35 characters
  kNoDate = 6,           // a fix before any date record
  kBadTimeOfDay = 7,     // not a time of day, or a day past the end of the time scale
  kBadLatitude = 8,      // 90 degrees or more, or not N or S
  kBadLongitude = 9,     // 180 degrees or more, or not E or W
  kBadPressureAltitude = 10,
  kBadGpsAltitude = 11,
};

// A flight that arrives from an instrument line by line.
struct Decoder {
  std::vector<TrackPoint> points;
  std::string manufacturer;  // 3 characters once an A record was seen
  std::string serial;        // 3 characters, "000" when the A record has none
  uint32_t g_records = 0;
  uint32_t start_time = 0;  // of the first fix

  // Where the decoder is.
  uint32_t date = 0;  // midnight of the flight's first day, from the last date record before the
                      // first fix; 0: not known yet
  uint32_t day_offset_s = 0;
  uint32_t last_time_of_day_s = 0;
};

// Feeds one line without its line end. An instrument is trusted more than a file: fixes are kept as
// they come, only what cannot be read is refused.
// Returns 1 when the line was a fix, now the last of decoder.points; 0 when it was anything else;
// -n (an LineFault) when it is refused, which leaves the points as they were.
int DecodeLine(Decoder& decoder, std::string_view line);

}  // namespace skyhaul::igc
