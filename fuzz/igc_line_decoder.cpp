// Any bytes as the lines of an instrument: each answer must agree with what the line did.

#include "formats/igc/decode_line.h"
#include "fuzz/frame.h"

namespace skyhaul {

namespace {

void RequireGoodFix(const igc::Decoder& decoder) {
  // 89 degrees and 99.999 minutes.
  constexpr int32_t kMaxLatitude = 1'081'700'000;
  const TrackPoint& point = decoder.points.back();
  const bool first = decoder.points.size() == 1;
  Require(point.segment_start == (first ? 1U : 0U));
  Require(point.time != 0 && point.milliseconds == 0);
  Require(std::abs(point.lat) <= kMaxLatitude);
  Require(point.pressure_alt >= -9999 && point.pressure_alt <= 99999);
  Require(point.gps_alt_dm >= -99990 && point.gps_alt_dm <= 999990);
  if (first) {
    Require(decoder.start_time == point.time);
  } else {
    const TrackPoint& previous = decoder.points[decoder.points.size() - 2];
    Require(point.time + uint64_t{3600} > previous.time);
  }
}

void FeedLine(igc::Decoder& decoder, std::string_view line) {
  const igc::Decoder before = decoder;
  const int result = igc::DecodeLine(decoder, line);
  Require(result >= -igc::kBadGpsAltitude && result <= 1);
  Require(decoder.points.size() == before.points.size() + (result == 1 ? 1 : 0));
  Require(std::equal(before.points.begin(), before.points.end(), decoder.points.begin()));
  if (result == 1) RequireGoodFix(decoder);
  if (result < 0) {
    Require(decoder.date == before.date && decoder.day_offset_s == before.day_offset_s);
    Require(decoder.last_time_of_day_s == before.last_time_of_day_s);
    Require(decoder.manufacturer == before.manufacturer && decoder.serial == before.serial);
  }
  Require(decoder.manufacturer.size() == decoder.serial.size());
}

}  // namespace

void Fuzz(std::string_view text) {
  igc::Decoder decoder;
  while (!text.empty()) FeedLine(decoder, TakeLine(text));
}

}  // namespace skyhaul
