#include "protocols/flytec/ctr_sentence.h"

#include <algorithm>
#include <optional>

#include "core/text/angles.h"
#include "core/units.h"
#include "protocols/flytec/field_text.h"
#include "protocols/sentence/fields.h"

namespace skyhaul::flytec {

namespace {

constexpr size_t kMostCtrs = 10'000;  // the instruments hold 500
constexpr size_t kLongestText = 50;
constexpr uint32_t kLeastTotal = 3;  // name, remark and one piece of the outline
constexpr uint32_t kLargestWarning_m = 9999;
constexpr uint32_t kLargestRadius_m = 99999;
constexpr double kRadiansPerMinute = 0.0002908882086657;  // pi / 10800

// What a latitude and a longitude differ in. Their error numbers follow the first one in the order
// of checking.
struct CoordinateTerms {
  uint32_t limit;  // degrees and minutes stay below it
  double largest_minutes;
  const char* hemispheres;
  int missing;
};
constexpr CoordinateTerms kLatitudeTerms = {9000, 90 * 60, "NS", kCtrLatitudeMissing};
constexpr CoordinateTerms kLongitudeTerms = {18001, 180 * 60, "EW", kCtrLongitudeMissing};
constexpr int kTooLarge = 1;  // added to CoordinateTerms::missing
constexpr int kNoPoint = 2;
constexpr int kBadFraction = 3;
constexpr int kHemisphereMissing = 4;
constexpr int kBadHemisphere = 5;

// Reads "4623.456" into minutes. Returns 0, or -n for the first fault from the left.
int ParseMinutes(std::string_view text, const CoordinateTerms& terms, double& minutes) {
  const size_t point = std::min(text.find_first_not_of("0123456789"), text.size());
  const std::optional<DegreesMinutes> whole = ReadDegreesMinutes(text.substr(0, point));
  const bool too_large = !whole || whole->degrees * 100 + whole->minutes >= terms.limit;
  if (point > 0 && too_large) return -(terms.missing + kTooLarge);
  if (point == 0 || !text.substr(point).starts_with('.')) return -(terms.missing + kNoPoint);
  const std::optional<DegreesMinutes> angle = ReadDegreesMinutes(text);
  if (!angle) return -(terms.missing + kBadFraction);
  minutes = angle->degrees * 60 + angle->minutes;
  return 0;
}

// "4710.002,N,": takes a coordinate and its hemisphere off the front of rest. The last one of a
// sentence takes all of rest, which no comma ends.
int TakeCoordinate(std::string_view& rest, const CoordinateTerms& terms, bool last,
                   int32_t& semicircles) {
  std::string_view digits;
  if (!SplitField(rest, digits)) return -terms.missing;
  double minutes = 0;
  if (const int bad = ParseMinutes(digits, terms, minutes); bad != 0) return bad;
  std::string_view hemisphere = rest;
  if (!last && !SplitField(rest, hemisphere)) return -(terms.missing + kHemisphereMissing);
  const bool negative = hemisphere == std::string_view(terms.hemispheres + 1, 1);
  if (!negative && hemisphere != std::string_view(terms.hemispheres, 1)) {
    return -(terms.missing + kBadHemisphere);
  }
  // Sixty minutes and more pass the limit on DDMM, up to a place beyond the pole.
  if (minutes > terms.largest_minutes) return -kCtrOffTheEarth;
  const double radians = minutes * kRadiansPerMinute;
  semicircles = RadiansToSemicircles(negative ? -radians : radians);
  return 0;
}

int TakePosition(std::string_view& rest, bool last, AirspacePosition& position) {
  const int bad = TakeCoordinate(rest, kLatitudeTerms, false, position.lat);
  return bad != 0 ? bad : TakeCoordinate(rest, kLongitudeTerms, last, position.lon);
}

int TakePoint(CtrRecord& record, AirspacePosition position) {
  record.segments.push_back({.type = SegmentType::kPoint, .point = position});
  return 1;
}

// $PBRCTR,003,002,C,4710.001,N,01104.700,E,12345
int TakeCircle(CtrRecord& record, AirspacePosition centre, std::string_view radius) {
  uint32_t radius_m = 0;
  // ParseUintField takes an empty text for 0, which is no radius here.
  const bool bad = radius.empty() || ParseUintField(radius, radius_m) != 0;
  if (bad || radius_m > kLargestRadius_m) return -kCtrBadRadius;
  record.segments.push_back(
      {.type = SegmentType::kCircle, .point = centre, .radius_m = static_cast<double>(radius_m)});
  return 1;
}

// The pieces of an arc must come in the order X, T, Z with nothing between them.
int TakeArcPiece(CtrReceiver& receiver, char type, AirspacePosition position,
                 std::string_view direction) {
  std::vector<AirspaceSegment>& segments = receiver.airspaces.back().segments;
  // X opens the arc with its centre and has no direction; T and Z follow it into the same segment.
  if (type == 'X') {
    segments.push_back({.type = SegmentType::kArcByPoints, .point = position});
    receiver.arc_piece = type;
    return 1;
  }
  if (direction != "+" && direction != "-") return -kCtrBadDirection;
  if (type == 'T') {
    segments.back().start = position;
    // Z repeats the direction. T's counts, because it comes first.
    segments.back().direction = direction[0];
    receiver.arc_piece = type;
  } else {
    segments.back().end = position;
    receiver.arc_piece = 0;
  }
  return 1;
}

bool InOrder(char arc_piece, char type) {
  switch (arc_piece) {
    case 'X':
      return type == 'T';
    case 'T':
      return type == 'Z';
    default:
      return type != 'T' && type != 'Z';
  }
}

int TakePiece(CtrReceiver& receiver, std::string_view rest) {
  // $PBRCTR,007,005,T,4703.000,N,01110.200,E,-   type, position, what the type needs
  std::string_view type;
  if (!SplitField(rest, type)) return -kCtrTypeMissing;
  constexpr std::string_view kTypes = "PXCTZ";
  if (type.size() != 1 || kTypes.find(type[0]) == std::string_view::npos) return -kCtrBadType;
  if (!InOrder(receiver.arc_piece, type[0])) return -kCtrArcOutOfOrder;
  // P and X end with the position, so anything after it is a bad hemisphere.
  const bool position_is_all = type == "P" || type == "X";
  AirspacePosition position;
  if (const int bad = TakePosition(rest, position_is_all, position); bad != 0) return bad;
  if (type == "P") return TakePoint(receiver.airspaces.back(), position);
  if (type == "C") return TakeCircle(receiver.airspaces.back(), position, rest);
  return TakeArcPiece(receiver, type[0], position, rest);
}

// $PBRCTR,007,000,Kreisbogen       ,3440   total, number of the sentence, name, warning in m
int OpenCtr(CtrReceiver& receiver, uint32_t total, uint32_t index, std::string_view rest) {
  if (total < kLeastTotal) return -kCtrTotalTooSmall;
  if (index != 0) return -kCtrNotAtStart;
  CtrRecord record;
  std::string_view name;
  uint32_t warning_m = 0;
  if (!SplitField(rest, name)) return -kCtrWarningMissing;
  if (ParseUintField(rest, warning_m) != 0 || warning_m > kLargestWarning_m) {
    return -kCtrBadWarning;
  }
  // An empty field is no distance of 0.
  if (!rest.empty()) record.warning_m = warning_m;
  if (receiver.airspaces.size() == kMostCtrs) return -kCtrMemory;
  record.name = TextOfField(name, kLongestText);
  receiver.airspaces.push_back(record);
  receiver.total = total;
  receiver.next_index = 1;
  return 1;
}

// $PBRCTR,007,001,Remark Kreisbogen   then one sentence for each piece of the outline
int ContinueCtr(CtrReceiver& receiver, uint32_t total, uint32_t index, std::string_view rest) {
  const bool remark = receiver.next_index == 1;
  if (index != receiver.next_index) return remark ? -kCtrNoRemark : -kCtrOutOfSequence;
  if (total != receiver.total) return -kCtrTotalChanged;
  if (remark) {
    receiver.airspaces.back().remark = TextOfField(rest, kLongestText);
  } else if (const int result = TakePiece(receiver, rest); result < 0) {
    return result;
  }
  if (++receiver.next_index < receiver.total) return 1;
  // The airspace is whole by its own count, but its last arc is not.
  if (receiver.arc_piece != 0) return -kCtrArcOutOfOrder;
  receiver.next_index = 0;
  return 1;
}

}  // namespace

int TakeCtrSentence(CtrReceiver& receiver, std::string_view sentence) {
  std::string_view rest = sentence;
  std::string_view field;
  if (!SplitField(rest, field)) return -kCtrNoField;
  // Inside an airspace the closing sentence would leave it cut off: it counts as unknown there.
  if (receiver.next_index == 0 && field == "$PBRANS") return rest == "1" ? 0 : -kCtrBadEnd;
  if (field != "$PBRCTR") return -kCtrUnknownSentence;
  uint32_t total = 0;
  if (!SplitField(rest, field)) return -kCtrTotalMissing;
  if (ParseUintField(field, total) != 0) return -kCtrBadTotal;
  uint32_t index = 0;
  if (!SplitField(rest, field)) return -kCtrIndexMissing;
  if (ParseUintField(field, index) != 0) return -kCtrBadIndex;
  return receiver.next_index == 0 ? OpenCtr(receiver, total, index, rest)
                                  : ContinueCtr(receiver, total, index, rest);
}

}  // namespace skyhaul::flytec
