#include "formats/openair/write_openair.h"

#include <gmock/gmock.h>

#include <random>

#include "formats/openair/read_openair.h"
#include "tests/formats/read_text.h"

namespace skyhaul::openair {
namespace {

std::vector<CtrRecord> ReadBack(const std::string& text) {
  const AirspaceFile file = ReadGood(Read, text);
  EXPECT_THAT(file.notes, testing::IsEmpty());
  return file.airspaces;
}

// A file in the form of the writer comes back to the byte, the numbers as they were written.
TEST(OpenAirWrite, GivesTheSameFile) {
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
  EXPECT_EQ(Write(ReadGood(Read, text).airspaces), text);
}

TEST(OpenAirWrite, AnyPositionAndRadiusIsReadBack) {
  std::mt19937 random(20240301);  // NOLINT(bugprone-random-generator-seed): repeatable
  std::uniform_int_distribution<int32_t> lat(-(1 << 30), 1 << 30);
  std::uniform_int_distribution<int32_t> lon(INT32_MIN, INT32_MAX);
  std::uniform_real_distribution<double> radius_m(1, 1e6);
  std::uniform_real_distribution<double> bearing_deg(0, 360);
  CtrRecord airspace = {.name = "Many", .airspace_class = "Q"};
  for (int i = 0; i < 5000; ++i) {
    airspace.segments.push_back({.type = SegmentType::kArcByBearings,
                                 .point = {.lat = lat(random), .lon = lon(random)},
                                 .radius_m = radius_m(random),
                                 .start_bearing_deg = bearing_deg(random)});
  }
  const std::vector<CtrRecord> again = ReadBack(Write({&airspace, 1}));
  ASSERT_EQ(again.at(0).segments.size(), airspace.segments.size());
  for (size_t i = 0; i < airspace.segments.size(); ++i) {
    const AirspaceSegment& left = again[0].segments[i];
    const AirspaceSegment& right = airspace.segments[i];
    EXPECT_EQ(left.point, right.point) << i;
    EXPECT_NEAR(left.radius_m, right.radius_m, 2e-6) << i;
    EXPECT_NEAR(left.start_bearing_deg, right.start_bearing_deg, 1e-9) << i;
  }
}

TEST(OpenAirWrite, TextThatCouldBreakALineIsMadePlain) {
  const CtrRecord airspace = {
      .name = " A*B\r\nDC 5\t",
      .remark = "lost",
      .number = 1234,
      .floor = {.reference = LimitReference::kGround, .value = 500},
      .ceiling = {.reference = LimitReference::kFlightLevel, .value = 95, .text = "\n"},
      .selected = false,
      .segments = {{.point = {.lat = 1, .lon = -1}}},
  };
  const std::vector<CtrRecord> again = ReadBack(Write({&airspace, 1}));
  ASSERT_EQ(again.size(), 1U);
  EXPECT_EQ(again[0].name, "A B  DC 5");
  EXPECT_EQ(again[0].airspace_class, "UNCLASSIFIED");
  EXPECT_EQ(again[0].floor.text, "500ft AGL");
  EXPECT_EQ(again[0].ceiling.text, "FL95");
  ASSERT_EQ(again[0].segments.size(), 1U);
  EXPECT_EQ(again[0].segments[0].point, airspace.segments[0].point);
  EXPECT_TRUE(again[0].selected);
  EXPECT_EQ(again[0].number, 0U);
}

TEST(OpenAirWrite, NothingIsAnEmptyFile) {
  EXPECT_EQ(Write({}), "");
}

}  // namespace
}  // namespace skyhaul::openair
