#pragma once

#include <cstddef>
#include <cstdint>

#include "core/waypoint_record.h"

namespace skyhaul::flytec {

// Why a byte of the waypoint list ends it, in the order of the fields. The driver shows the number.
enum WaypointError : int {
  kWaypointLatitudeTooLong = 1,      // a digit after 896 or more
  kWaypointBadLatitude = 2,          // neither digit, '.' nor ',', or no digit at all
  kWaypointBadLatitudeFraction = 3,  // neither digit nor ','
  kWaypointBadLatitudeHemisphere = 4,
  kWaypointLatitudeCommaMissing = 5,  // after the hemisphere
  kWaypointLongitudeTooLong = 6,      // a digit after 1796 or more
  kWaypointBadLongitude = 7,
  kWaypointBadLongitudeFraction = 8,
  kWaypointBadLongitudeHemisphere = 9,
  kWaypointLongitudeCommaMissing = 10,
  kWaypointLineEndInShortName = 11,
  kWaypointShortNameTooLong = 12,  // more than 6 characters
  kWaypointLineEndInLongName = 13,
  kWaypointLongNameTooLong = 14,  // more than 17 characters
  kWaypointBadAltitude = 15,      // no digit where the first one must be
  kWaypointAltitudeTooLong = 16,  // no '*' after at most 5 characters
  kWaypointBadFirstChecksumDigit = 17,
  kWaypointBadSecondChecksumDigit = 18,
  kWaypointCrMissing = 19,
  kWaypointChecksumMismatch = 20,
  kWaypointLfMissing = 21,
};

inline constexpr size_t kWaypointShortName = 6;
inline constexpr size_t kWaypointLongName = 17;
inline constexpr size_t kWaypointAltitude = 5;

enum class WaypointState : uint8_t {
  kStart,
  kPrefix,
  kLatitude,
  kLatitudeFraction,
  kLatitudeHemisphere,
  kLatitudeComma,
  kLongitude,
  kLongitudeFraction,
  kLongitudeHemisphere,
  kLongitudeComma,
  kShortName,
  kLongName,
  kAltitude,
  kFirstDigit,
  kSecondDigit,
  kCarriageReturn,
  kLineFeed,
};

// A coordinate while its digits arrive.
struct WaypointCoordinate {
  uint32_t whole = 0;  // degrees and minutes, DDMM or DDDMM
  double fraction = 0;
  double weight = 0.1;  // of the fraction's next digit
  bool any_digit = false;
  bool negative = false;
};

// Recognises "$PBRWPS," latitude "," N or S "," longitude "," E or W "," short name "," long name
// "," altitude "*" checksum CR LF. Flow-control bytes must not be fed. A hemisphere may be empty,
// which is north or east; a '*' in the short name ends the fields there, and what would have
// followed stays empty and 0. Any other sentence is passed over: after a wrong byte in the prefix
// the next '$' is waited for. After an error the recogniser is back at its start.
struct WaypointRecogniser {
  WaypointState state = WaypointState::kStart;
  size_t prefix_index = 0;
  uint8_t running_xor = 0;
  uint8_t computed = 0;  // the running XOR as it was at '*'
  uint8_t received = 0;
  WaypointCoordinate latitude;
  WaypointCoordinate longitude;
  size_t length = 0;  // of the field being received
  bool altitude_negative = false;

  // Whole when a sentence is complete, until the next '$': the short name in name, the long name in
  // description, both without blanks at their end; time and type are 0.
  WaypointRecord waypoint;
};

// Feeds one byte. Returns 1 (more needed), 0 (one waypoint complete, checksum right), or -n with n
// a WaypointError.
int FeedWaypointByte(WaypointRecogniser& recogniser, uint8_t byte);

}  // namespace skyhaul::flytec
