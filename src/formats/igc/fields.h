#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace skyhaul::igc {

// The fields that the file reader and the instrument line decoder read alike. Where the two differ,
// in what they think of a number that can be read, the caller has the limits.
//
// The columns of a B record, counted from 0:
//
//   0  B           7  ddmmmmm   latitude    14 N/S     24  validity: A is 3D, V is 2D or none
//   1  hhmmss     15  dddmmmmm  longitude   23 E/W     25  ppppp pressure altitude, m
//                                                      30  ggggg GPS altitude, m
inline constexpr size_t kTimeColumn = 1;
inline constexpr size_t kLatitudeColumn = 7;
inline constexpr size_t kLongitudeColumn = 15;
inline constexpr size_t kValidityColumn = 24;
inline constexpr size_t kPressureAltitudeColumn = 25;
inline constexpr size_t kGpsAltitudeColumn = 30;
inline constexpr size_t kBRecordLength = 35;

// How far the time of day must fall behind the previous fix's for a new day to have begun. A clock
// that is set back by less, as receivers do when they learn the leap seconds, stays on its day.
inline constexpr uint32_t kMidnightStep_s = 3600;

// Whether a fix comes after midnight, seen from the fix before it; both in seconds of their days.
inline bool IsPastMidnight(uint32_t time_of_day_s, uint32_t previous_time_of_day_s) {
  return time_of_day_s + kMidnightStep_s <= previous_time_of_day_s;
}

// Manufacturer and serial of an A record: 3 characters each.
struct RecorderId {
  std::string_view manufacturer;
  std::string_view serial;  // "000" when the line ends, or a blank follows, after the manufacturer
};

enum class RecorderIdFault { kNone, kManufacturer, kSerial };

// Reads an A record; only letters and digits are accepted. The views of id point into the line.
RecorderIdFault ReadRecorderId(std::string_view line, RecorderId& id);

// A date "ddmmyy", years from 2000 on. Returns its midnight (see core/time_scale.h), or 0 when the
// six characters are not there or not a date.
uint32_t ReadDate(std::string_view ddmmyy);

// The time of day of a B record in seconds, or -1. Leap seconds (60) are not accepted.
int ReadTimeOfDay(std::string_view b_record);

// A latitude or longitude as it is written.
struct WrittenAngle {
  int degrees = 0;
  int milliminutes = 0;   // thousandths of a minute, 0..99999
  bool negative = false;  // S or W
};

// Reads an angle at a column of a B record. Returns whether its digits and its letter are right;
// what range they must be in is for the caller to test.
bool ReadLatitude(std::string_view b_record, WrittenAngle& latitude);
bool ReadLongitude(std::string_view b_record, WrittenAngle& longitude);

// Reads an altitude at a column of a B record, metres: five digits, or "-" and four digits.
bool ReadAltitude(std::string_view b_record, size_t column, int32_t& altitude_m);

}  // namespace skyhaul::igc
