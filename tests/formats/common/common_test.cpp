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
  for (const int sign : {1, -1}) EXPECT_TRUE(PositionFromDegrees(sign * 90, sign * 180));
  const double nan = std::nan("");
  const double bad[][2] = {{90.0000001, 0}, {-91, 0}, {0, 180.0000001}, {0, -181},
                           {nan, 0},        {0, nan}, {1e300, 0}};
  for (const auto& test : bad) EXPECT_FALSE(PositionFromDegrees(test[0], test[1])) << test[0];
}

TEST(AngleInSteps, RoundsTheSizeOfTheAngle) {
  EXPECT_EQ(AngleInSteps(INT32_MIN, 60000), 10800000U);
  EXPECT_EQ(AngleInSteps(INT32_MAX, 60000), 10800000U);  // rounds up to a whole degree
  EXPECT_EQ(AngleInSteps(99, 60000), 0U);                // half a thousandth of a minute is 99.4
  EXPECT_EQ(AngleInSteps(100, 60000), 1U);
}

}  // namespace
}  // namespace skyhaul
