#include <gtest/gtest.h>

#include <cmath>

#include "formats/common/messages.h"
#include "formats/common/position.h"
#include "formats/common/xml_text.h"

namespace skyhaul {
namespace {

TEST(AppendXmlText, EscapesAndKeepsWhatXmlAllows) {
  const std::pair<std::string_view, std::string_view> cases[] = {
      {"a<b>&\"c\"'", "a&lt;b&gt;&amp;&quot;c&quot;'"},
      {"Größe\t\n", "Größe\t\n"},
      {std::string_view("a\0b\x1b\x01", 5), "a b  "},
      {"a\xEF\xBF\xBF\xEF\xBF\xBE\xEF\xBF\xBD", "a??\xEF\xBF\xBD"},
      {"Gruy\xE8res", "Gruyères"},
  };
  for (const auto& [text, expected] : cases) {
    std::string xml;
    AppendXmlText(xml, text);
    EXPECT_EQ(xml, expected);
  }
}

TEST(DatumError, KnowsTheSpellingsOfWgs84) {
  for (const char* datum : {"WGS 84", "WGS84", "wgs-84", "WGS 1984"}) {
    EXPECT_EQ(DatumError(2, datum), "") << datum;
  }
  for (const char* datum : {"", "WGS 72", "European 1979", "WGS 84 x"}) {
    EXPECT_NE(DatumError(2, datum), "") << datum;
  }
}

TEST(PositionFromDegrees, KeepsToTheGlobe) {
  const struct {
    double lat_deg, lon_deg;
    FilePosition position;
  } good[] = {
      {0, 0, {0, 0}},
      {90, 180, {1 << 30, INT32_MAX}},
      {-90, -180, {-(1 << 30), INT32_MIN}},
      {45, -0.000000041909516, {1 << 29, 0}},  // just under half a semicircle
      {-45, -0.0000000419095159, {-(1 << 29), -1}},
  };
  for (const auto& test : good) {
    const auto position = PositionFromDegrees(test.lat_deg, test.lon_deg);
    ASSERT_TRUE(position);
    EXPECT_EQ(position->lat, test.position.lat);
    EXPECT_NEAR(position->lon, test.position.lon, 1);
  }
  const double nan = std::nan("");
  const double bad[][2] = {{90.0000001, 0}, {-91, 0}, {0, 180.0000001}, {0, -181},
                           {nan, 0},        {0, nan}, {1e300, 0}};
  for (const auto& test : bad) EXPECT_FALSE(PositionFromDegrees(test[0], test[1])) << test[0];
}

TEST(AngleInSteps, RoundsTheSizeOfTheAngle) {
  const std::tuple<int32_t, uint32_t, uint64_t> cases[] = {
      {0, 60000, 0},
      {INT32_MIN, 60000, 10800000},
      {INT32_MAX, 60000, 10800000},  // rounds up to a whole degree
      {INT32_MIN, 360000, 64800000},
      {1 << 30, 60000, 5400000},
      {99, 60000, 0},  // half a thousandth of a minute is 99.4
      {100, 60000, 1},
      {-100, 60000, 1},
  };
  for (const auto& [semicircles, steps_per_degree, steps] : cases) {
    EXPECT_EQ(AngleInSteps(semicircles, steps_per_degree), steps);
  }
}

}  // namespace
}  // namespace skyhaul
