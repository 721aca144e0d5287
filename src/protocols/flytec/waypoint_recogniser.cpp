#include "protocols/flytec/waypoint_recogniser.h"

#include <string_view>

#include "core/units.h"
#include "protocols/sentence/checksum.h"

namespace skyhaul::flytec {

namespace {

// $PBRWPS,4743.564,N,01121.571,E,URT062,Urthaler Hof     ,0620*03
constexpr std::string_view kPrefix = "$PBRWPS,";
constexpr double kRadiansPerMinute = 0.0002908882086657;  // pi / 10800

// What a latitude and a longitude differ in, and what follows each of their pieces.
struct CoordinateTerms {
  uint32_t limit;    // no further digit once the value has reached it
  uint8_t positive;  // its hemispheres' letters
  uint8_t negative;
  WaypointState fraction;
  WaypointState hemisphere;
  WaypointState comma;
  WaypointState next;
  int too_long;  // the other errors follow it in the order of the pieces
};

constexpr CoordinateTerms kLatitudeTerms = {.limit = 896,
                                            .positive = 'N',
                                            .negative = 'S',
                                            .fraction = WaypointState::kLatitudeFraction,
                                            .hemisphere = WaypointState::kLatitudeHemisphere,
                                            .comma = WaypointState::kLatitudeComma,
                                            .next = WaypointState::kLongitude,
                                            .too_long = kWaypointLatitudeTooLong};
constexpr CoordinateTerms kLongitudeTerms = {.limit = 1796,
                                             .positive = 'E',
                                             .negative = 'W',
                                             .fraction = WaypointState::kLongitudeFraction,
                                             .hemisphere = WaypointState::kLongitudeHemisphere,
                                             .comma = WaypointState::kLongitudeComma,
                                             .next = WaypointState::kShortName,
                                             .too_long = kWaypointLongitudeTooLong};
constexpr int kBadDigit = 1;  // added to CoordinateTerms::too_long
constexpr int kBadFraction = 2;
constexpr int kBadHemisphere = 3;
constexpr int kCommaMissing = 4;

bool IsDigit(uint8_t byte) {
  return byte >= '0' && byte <= '9';
}

int GoOn(WaypointRecogniser& recogniser, WaypointState state) {
  recogniser.state = state;
  recogniser.length = 0;
  return 1;
}

// The running XOR holds the '*' already, which is not part of the sum.
int EndFields(WaypointRecogniser& recogniser) {
  recogniser.computed = static_cast<uint8_t>(recogniser.running_xor ^ '*');
  return GoOn(recogniser, WaypointState::kFirstDigit);
}

int FeedWhole(WaypointRecogniser& recogniser, WaypointCoordinate& coordinate,
              const CoordinateTerms& terms, uint8_t byte) {
  if (IsDigit(byte)) {
    // Checked before the digit is added: 896 may not grow, so that 8959 is the largest.
    if (coordinate.whole >= terms.limit) return -terms.too_long;
    coordinate.whole = coordinate.whole * 10 + (byte - uint32_t{'0'});
    coordinate.any_digit = true;
    return 1;
  }
  if (coordinate.any_digit && byte == '.') return GoOn(recogniser, terms.fraction);
  // Whole minutes without a decimal point.
  if (coordinate.any_digit && byte == ',') return GoOn(recogniser, terms.hemisphere);
  return -(terms.too_long + kBadDigit);
}

int FeedFraction(WaypointRecogniser& recogniser, WaypointCoordinate& coordinate,
                 const CoordinateTerms& terms, uint8_t byte) {
  if (byte == ',') return GoOn(recogniser, terms.hemisphere);
  if (!IsDigit(byte)) return -(terms.too_long + kBadFraction);
  coordinate.fraction += coordinate.weight * (byte - '0');
  coordinate.weight /= 10;
  return 1;
}

int FeedHemisphere(WaypointRecogniser& recogniser, WaypointCoordinate& coordinate,
                   const CoordinateTerms& terms, uint8_t byte) {
  // An empty hemisphere is the positive one.
  if (byte == ',') return GoOn(recogniser, terms.next);
  if (byte != terms.positive && byte != terms.negative) return -(terms.too_long + kBadHemisphere);
  coordinate.negative = byte == terms.negative;
  return GoOn(recogniser, terms.comma);
}

int FeedComma(WaypointRecogniser& recogniser, const CoordinateTerms& terms, uint8_t byte) {
  return byte == ',' ? GoOn(recogniser, terms.next) : -(terms.too_long + kCommaMissing);
}

bool IsLineEnd(uint8_t byte) {
  return byte == '\r' || byte == '\n';
}

int FeedShortName(WaypointRecogniser& recogniser, uint8_t byte) {
  if (byte == ',') return GoOn(recogniser, WaypointState::kLongName);
  // Short sentences end here, without long name and altitude.
  if (byte == '*') return EndFields(recogniser);
  if (IsLineEnd(byte)) return -kWaypointLineEndInShortName;
  if (recogniser.length == kWaypointShortName) return -kWaypointShortNameTooLong;
  recogniser.waypoint.name[recogniser.length++] = static_cast<char>(byte);
  return 1;
}

int FeedLongName(WaypointRecogniser& recogniser, uint8_t byte) {
  if (byte == ',') return GoOn(recogniser, WaypointState::kAltitude);
  if (IsLineEnd(byte)) return -kWaypointLineEndInLongName;
  if (recogniser.length == kWaypointLongName) return -kWaypointLongNameTooLong;
  recogniser.waypoint.description[recogniser.length++] = static_cast<char>(byte);
  return 1;
}

int FeedAltitude(WaypointRecogniser& recogniser, uint8_t byte) {
  const size_t sign = recogniser.altitude_negative ? 1 : 0;
  if (!IsDigit(byte)) {
    const bool any_digit = recogniser.length > sign;
    if (any_digit) return byte == '*' ? EndFields(recogniser) : -kWaypointAltitudeTooLong;
    if (byte != '-' || recogniser.length > 0) return -kWaypointBadAltitude;
    // A minus counts as one of the five characters, and only as the first one.
    recogniser.altitude_negative = true;
    ++recogniser.length;
    return 1;
  }
  if (recogniser.length == kWaypointAltitude) return -kWaypointAltitudeTooLong;
  ++recogniser.length;
  recogniser.waypoint.altitude = recogniser.waypoint.altitude * 10 + (byte - '0');
  return 1;
}

int32_t Semicircles(const WaypointCoordinate& coordinate) {
  // DDMM or DDDMM: the last two digits are minutes.
  const uint32_t minutes = coordinate.whole / 100 * 60 + coordinate.whole % 100;
  const double radians = (minutes + coordinate.fraction) * kRadiansPerMinute;
  return RadiansToSemicircles(coordinate.negative ? -radians : radians);
}

template <size_t kSize>
void TrimEnd(char (&text)[kSize]) {
  size_t length = std::string_view(text).size();
  while (length > 0 && text[length - 1] == ' ') text[--length] = 0;
}

int Complete(WaypointRecogniser& recogniser) {
  WaypointRecord& waypoint = recogniser.waypoint;
  waypoint.lat = Semicircles(recogniser.latitude);
  waypoint.lon = Semicircles(recogniser.longitude);
  if (recogniser.altitude_negative) waypoint.altitude = -waypoint.altitude;
  TrimEnd(waypoint.name);
  TrimEnd(waypoint.description);
  recogniser.state = WaypointState::kStart;
  return 0;
}

int FeedTail(WaypointRecogniser& recogniser, uint8_t byte) {
  switch (recogniser.state) {
    case WaypointState::kFirstDigit: {
      const int digit = UpperHexValue(byte);
      if (digit < 0) return -kWaypointBadFirstChecksumDigit;
      recogniser.received = static_cast<uint8_t>(digit << 4);
      return GoOn(recogniser, WaypointState::kSecondDigit);
    }
    case WaypointState::kSecondDigit: {
      const int digit = UpperHexValue(byte);
      if (digit < 0) return -kWaypointBadSecondChecksumDigit;
      recogniser.received = static_cast<uint8_t>(recogniser.received | digit);
      return GoOn(recogniser, WaypointState::kCarriageReturn);
    }
    case WaypointState::kCarriageReturn:
      if (byte != '\r') return -kWaypointCrMissing;
      return GoOn(recogniser, WaypointState::kLineFeed);
    default:
      if (byte != '\n') return -kWaypointLfMissing;
      if (recogniser.received != recogniser.computed) return -kWaypointChecksumMismatch;
      return Complete(recogniser);
  }
}

int FeedStart(WaypointRecogniser& recogniser, uint8_t byte) {
  if (byte != static_cast<uint8_t>(kPrefix[0])) return 1;
  recogniser = {};
  recogniser.state = WaypointState::kPrefix;
  recogniser.prefix_index = 1;
  return 1;
}

int FeedPrefix(WaypointRecogniser& recogniser, uint8_t byte) {
  if (byte != static_cast<uint8_t>(kPrefix[recogniser.prefix_index])) {
    // Another sentence, or a '$' that begins a new one inside it.
    recogniser.state = WaypointState::kStart;
    return FeedStart(recogniser, byte);
  }
  const bool whole = ++recogniser.prefix_index == kPrefix.size();
  return whole ? GoOn(recogniser, WaypointState::kLatitude) : 1;
}

int FeedState(WaypointRecogniser& recogniser, uint8_t byte) {
  switch (recogniser.state) {
    case WaypointState::kStart:
      return FeedStart(recogniser, byte);
    case WaypointState::kPrefix:
      return FeedPrefix(recogniser, byte);
    case WaypointState::kLatitude:
      return FeedWhole(recogniser, recogniser.latitude, kLatitudeTerms, byte);
    case WaypointState::kLatitudeFraction:
      return FeedFraction(recogniser, recogniser.latitude, kLatitudeTerms, byte);
    case WaypointState::kLatitudeHemisphere:
      return FeedHemisphere(recogniser, recogniser.latitude, kLatitudeTerms, byte);
    case WaypointState::kLatitudeComma:
      return FeedComma(recogniser, kLatitudeTerms, byte);
    case WaypointState::kLongitude:
      return FeedWhole(recogniser, recogniser.longitude, kLongitudeTerms, byte);
    case WaypointState::kLongitudeFraction:
      return FeedFraction(recogniser, recogniser.longitude, kLongitudeTerms, byte);
    case WaypointState::kLongitudeHemisphere:
      return FeedHemisphere(recogniser, recogniser.longitude, kLongitudeTerms, byte);
    case WaypointState::kLongitudeComma:
      return FeedComma(recogniser, kLongitudeTerms, byte);
    case WaypointState::kShortName:
      return FeedShortName(recogniser, byte);
    case WaypointState::kLongName:
      return FeedLongName(recogniser, byte);
    case WaypointState::kAltitude:
      return FeedAltitude(recogniser, byte);
    default:
      return FeedTail(recogniser, byte);
  }
}

}  // namespace

int FeedWaypointByte(WaypointRecogniser& recogniser, uint8_t byte) {
  // The '$' clears the sum when it starts a sentence, so it is never part of it.
  recogniser.running_xor = static_cast<uint8_t>(recogniser.running_xor ^ byte);
  const int result = FeedState(recogniser, byte);
  if (result < 0) recogniser.state = WaypointState::kStart;
  return result;
}

}  // namespace skyhaul::flytec
