#include "formats/openair/write_openair.h"

#include <gmock/gmock.h>

#include <random>

#include "formats/openair/read_openair.h"
#include "tests/formats/read_text.h"

namespace skyhaul {
namespace {

void ExpectSameLimit(const AirspaceLimit& left, const AirspaceLimit& right) {
  EXPECT_EQ(left.reference, right.reference);
  EXPECT_EQ(left.unit, right.unit);
  EXPECT_EQ(left.value, right.value);
}

void ExpectSameSegment(const AirspaceSegment& left, const AirspaceSegment& right) {
  EXPECT_EQ(left.type, right.type);
  EXPECT_EQ(left.point, right.point);
  EXPECT_EQ(left.start, right.start);
  EXPECT_EQ(left.end, right.end);
  EXPECT_NEAR(left.radius_m, right.radius_m, 2e-6);
  EXPECT_NEAR(left.start_bearing_deg, right.start_bearing_deg, 1e-9);
  EXPECT_NEAR(left.end_bearing_deg, right.end_bearing_deg, 1e-9);
  EXPECT_EQ(left.direction, right.direction);
}

std::vector<CtrRecord> ReadBack(const std::string& text) {
  const AirspaceFile file = ReadGood(ReadOpenAir, text);
  EXPECT_THAT(file.notes, testing::IsEmpty());
  return file.airspaces;
}

// A file in the form of the writer comes back to the byte, the numbers as they were written.
TEST(WriteOpenAir, GivesTheSameFile) {
  const std::string text =
      "AC R\r\n"
      "AN Z\xC3\xBCrich (LS-R 7)\r\n"
      "AH Ask on 122.8\r\n"
      "AL 2500ft  agl\r\n"
      "DP 47:30:15 N 008:15:30.5 E\r\n"
      "V X=47:00:00.25 N 008:00:59.123 W\r\n"
      "DB 47:06:00 N 008:00:00 E,47:00:00 S 008:09:00 E\r\n"
      "V D=-\r\n"
      "DA 5.3,270.25,360\r\n"
      "V X=90:00:00 N 180:00:00 W\r\n"
      "DC 0.123456789\r\n"
      "V D=+\r\n"
      "DA 10,0,0.1\r\n"
      "\r\n"
      "AC A\r\n"
      "V X=00:00:00 N 000:00:00 E\r\n"
      "DC 25\r\n";
  EXPECT_EQ(WriteOpenAir(ReadGood(ReadOpenAir, text).airspaces), text);
}

TEST(WriteOpenAir, AnyOutlineIsReadBack) {
  std::mt19937 random(20240301);
  std::uniform_int_distribution<int32_t> lat(-(1 << 30), 1 << 30);
  std::uniform_int_distribution<int32_t> lon(INT32_MIN, INT32_MAX);
  std::uniform_int_distribution<uint32_t> type(0, 3);
  std::uniform_real_distribution<double> radius_m(1, 1e6);
  std::uniform_real_distribution<double> bearing_deg(0, 360);
  const auto position = [&] { return AirspacePosition{.lat = lat(random), .lon = lon(random)}; };
  CtrRecord airspace = {.name = "Many", .airspace_class = "Q"};
  for (int i = 0; i < 5000; ++i) {
    AirspaceSegment segment = {.type = static_cast<SegmentType>(type(random)), .point = position()};
    if (segment.type == SegmentType::kArcByPoints) {
      segment.start = position();
      segment.end = position();
    } else if (segment.type != SegmentType::kPoint) {
      segment.radius_m = radius_m(random);
    }
    if (segment.type == SegmentType::kArcByBearings) {
      segment.start_bearing_deg = bearing_deg(random);
      segment.end_bearing_deg = bearing_deg(random);
    }
    const bool arc =
        segment.type == SegmentType::kArcByPoints || segment.type == SegmentType::kArcByBearings;
    if (arc && lat(random) < 0) segment.direction = kCounterClockwise;
    airspace.segments.push_back(segment);
  }
  const std::vector<CtrRecord> again = ReadBack(WriteOpenAir({&airspace, 1}));
  ASSERT_EQ(again.size(), 1U);
  ASSERT_EQ(again[0].segments.size(), airspace.segments.size());
  for (size_t i = 0; i < airspace.segments.size(); ++i) {
    SCOPED_TRACE(i);
    ExpectSameSegment(again[0].segments[i], airspace.segments[i]);
  }
}

TEST(WriteOpenAir, TextThatCouldBreakALineIsMadePlain) {
  const CtrRecord airspace = {
      .name = " A*B\r\nDC 5\t",
      .remark = "lost",
      .number = 1234,
      .floor = {.reference = LimitReference::kGround, .value = 500},
      .ceiling = {.reference = LimitReference::kFlightLevel, .value = 95, .text = "\n"},
      .selected = false,
      .segments = {{.point = {.lat = 1, .lon = -1}}},
  };
  const std::vector<CtrRecord> again = ReadBack(WriteOpenAir({&airspace, 1}));
  ASSERT_EQ(again.size(), 1U);
  EXPECT_EQ(again[0].name, "A B  DC 5");
  EXPECT_EQ(again[0].airspace_class, "UNCLASSIFIED");
  ExpectSameLimit(again[0].floor, airspace.floor);
  ExpectSameLimit(again[0].ceiling, airspace.ceiling);
  ASSERT_EQ(again[0].segments.size(), 1U);
  EXPECT_EQ(again[0].segments[0].point, airspace.segments[0].point);
  EXPECT_TRUE(again[0].selected);
  EXPECT_EQ(again[0].number, 0U);
}

TEST(WriteOpenAir, NothingIsAnEmptyFile) {
  EXPECT_EQ(WriteOpenAir({}), "");
}

}  // namespace
}  // namespace skyhaul
