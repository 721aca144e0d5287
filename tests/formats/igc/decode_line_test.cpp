#include "formats/igc/decode_line.h"

#include <gtest/gtest.h>

#include "core/time_scale.h"
#include "core/units.h"

namespace skyhaul::igc {
namespace {

std::string Fix(const std::string& hhmmss) {
  return std::string("B").append(hhmmss).append("4707500N01130001EA0012300456");
}

TEST(IgcDecodeLine, AcceptsAndRefusesLines) {
  const std::pair<int, std::vector<const char*>> cases[] = {
      {0, {"", "LXSHwhatever", "G1234", "AXSH000", "AXSH free", "HFPLTPILOT:x", "HFDTE140526"}},
      {0, {"HFDTE140526rest", "HFDTEDATE:140526,01"}},
      {-kBadARecord, {"AXSH", "AXSH00"}},
      {-kBadManufacturer, {"AX H000"}},
      {-kBadSerial, {"AXSH0 0"}},
      {-kBadDate, {"HFDTE14052", "HFDTEDATE:14052", "HFDTE000526", "HFDTE141326", "HFDTE1a0526"}},
      {1, {"B1200004799999N01199999WV-0012-0456extension", "B2359598999999S17999999EA9999999999"}},
      {-kShortBRecord, {"B1200004707500N01130001EA001230045"}},
      {-kBadTimeOfDay,
       {"B2400004707500N01130001EA0012300456", "B1260004707500N01130001EA0012300456",
        "B1200604707500N01130001EA0012300456", "B12000x4707500N01130001EA0012300456"}},
      {-kBadLatitude,
       {"B1200009000000N01130001EA0012300456", "B12000047075 0N01130001EA0012300456",
        "B1200004707500n01130001EA0012300456"}},
      {-kBadLongitude,
       {"B1200004707500N18000000EA0012300456", "B1200004707500N0113000-EA0012300456",
        "B1200004707500N01130001SA0012300456", "B1200004707500N-1130001EA0012300456"}},
      {-kBadPressureAltitude,
       {"B1200004707500N01130001EA--12300456", "B1200004707500N01130001EA+012300456"}},
      {-kBadGpsAltitude,
       {"B1200004707500N01130001EA001230045x", "B1200004707500N01130001EA00123004-6"}},
  };
  for (const auto& [result, lines] : cases) {
    for (const char* line : lines) {
      Decoder decoder;
      ASSERT_EQ(DecodeLine(decoder, "HFDTE010126"), 0);
      EXPECT_EQ(DecodeLine(decoder, line), result) << line;
      EXPECT_EQ(decoder.points.size(), result == 1 ? 1U : 0U) << line;
    }
  }
}

TEST(IgcDecodeLine, ReadsEveryField) {
  Decoder decoder;
  EXPECT_EQ(DecodeLine(decoder, Fix("120000")), -kNoDate);
  DecodeLine(decoder, "AABC12xFLIGHT:1");
  DecodeLine(decoder, "HFDTE140526");
  // Minutes are not held below 60: 47 degrees and 61.5 minutes are 48 degrees and 1.5 minutes.
  ASSERT_EQ(DecodeLine(decoder, "B0102034761500S01130999WA-0012-0456"), 1);
  DecodeLine(decoder, "G1");
  DecodeLine(decoder, "G2");
  EXPECT_EQ(decoder.manufacturer + decoder.serial, "ABC12x");
  EXPECT_EQ(decoder.g_records, 2U);
  EXPECT_EQ(decoder.points[0], (TrackPoint{.segment_start = 1,
                                           .time = TimeFromCalendar({2026, 5, 14, 1, 2, 3}),
                                           .lat = MilliminutesToSemicircles(-(48 * 60000 + 1500)),
                                           .lon = MilliminutesToSemicircles(-(11 * 60000 + 30999)),
                                           .gps_alt_dm = -4560,
                                           .pressure_alt = -12}));
  EXPECT_EQ(decoder.start_time, decoder.points[0].time);
  DecodeLine(decoder, "AXYZ anything");
  EXPECT_EQ(decoder.serial, "000");
}

TEST(IgcDecodeLine, LinesUpTimes) {
  Decoder decoder;
  DecodeLine(decoder, "HFDTE150526");
  DecodeLine(decoder, "HFDTE140526");
  // Repeated seconds stay; a refused line between does not count as the previous fix.
  for (const char* hhmmss : {"100000", "100000", "090001", "24", "080001", "235959"}) {
    DecodeLine(decoder, Fix(hhmmss));
  }
  EXPECT_EQ(DecodeLine(decoder, "B0000009100000N01130001EA0012300456"), -kBadLatitude);
  // The instrument repeats the date after midnight, which is one midnight all the same.
  DecodeLine(decoder, "HFDTE160526");
  DecodeLine(decoder, Fix("000000"));
  std::string times;
  for (const TrackPoint& point : decoder.points) {
    times += std::to_string(point.time - TimeFromCalendar({2026, 5, 14})) +
             (point.segment_start != 0 ? "! " : " ");
  }
  EXPECT_EQ(times, "36000! 36000 32401 115201 172799 172800 ");
}

TEST(IgcDecodeLine, StopsAtTheEndOfTheTimeScale) {
  Decoder decoder;
  DecodeLine(decoder, "HFDTE311299");
  // The scale ends on a morning.
  while (DecodeLine(decoder, Fix("230000")) == 1 && DecodeLine(decoder, Fix("000000")) == 1) {
  }
  EXPECT_EQ(DecodeLine(decoder, Fix("230000")), -kBadTimeOfDay);
  EXPECT_GT(decoder.points.back().time, decoder.points.front().time);
}

}  // namespace
}  // namespace skyhaul::igc
