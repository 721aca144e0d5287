#include "protocols/sentence/positions.h"

#include <gtest/gtest.h>

#include "core/units.h"

namespace skyhaul {
namespace {

TEST(Positions, AreWrittenRoundedWithTheHemisphereOfTheSign) {
  const std::tuple<double, const char*, const char*> cases[] = {
      {0, "0000.000,N", "00000.000,E"},           {-0.0000001, "0000.000,S", "00000.000,W"},
      {47.72606666, "4743.564,N", "04743.564,E"}, {-7.99999999, "0800.000,S", "00800.000,W"},
      {90, "9000.000,N", "09000.000,E"},
  };
  for (const auto& [degrees, latitude, longitude] : cases) {
    EXPECT_EQ(FormatLatitude(degrees, kMilliminutesPerDegree), latitude);
    EXPECT_EQ(FormatLongitude(degrees, kMilliminutesPerDegree), longitude);
    EXPECT_EQ(FormatLatitude(degrees / kDegreesPerRadian, kMilliminutesPerRadian), latitude);
  }
  EXPECT_EQ(FormatLongitude(-180, kMilliminutesPerDegree), "18000.000,W");
}

TEST(Positions, AreReadWithinTheirLimits) {
  const struct {
    const char* digits;
    const char* hemisphere;
    double latitude_deg;  // 1000: refused
    double longitude_deg;
  } cases[] = {
      {"4743.564", "N", 47.72606667, 1000},
      {"4743.564", "W", 1000, -47.72606667},
      {"0425.130", "S", -4.41883333, 1000},
      {"01121.571", "E", 1000, 11.35951667},
      {"4743.5", "", 47.725, 47.725},
      {"4743", "", 47.71666667, 47.71666667},
      {"8959.999", "N", 89.99998333, 1000},
      {"9000.000", "", 1000, 90},
      {"17959.999", "E", 1000, 179.99998333},
      {"", "N", 1000, 1000},
      {"47a", "N", 1000, 1000},
      {"4743.56x", "E", 1000, 1000},
      {"4743.5", "NN", 1000, 1000},
  };
  for (const auto& c : cases) {
    double rad = 1000 / kDegreesPerRadian;
    const int latitude = ParseLatitude(c.digits, c.hemisphere, rad);
    EXPECT_EQ(latitude, c.latitude_deg == 1000 ? -1 : 0) << c.digits;
    EXPECT_NEAR(rad * kDegreesPerRadian, c.latitude_deg, 1e-7) << c.digits;
    rad = 1000 / kDegreesPerRadian;
    const int longitude = ParseLongitude(c.digits, c.hemisphere, rad);
    EXPECT_EQ(longitude, c.longitude_deg == 1000 ? -1 : 0) << c.digits;
    EXPECT_NEAR(rad * kDegreesPerRadian, c.longitude_deg, 1e-7) << c.digits;
  }
}

}  // namespace
}  // namespace skyhaul
