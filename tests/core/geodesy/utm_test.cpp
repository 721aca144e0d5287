#include "core/geodesy/utm.h"

#include <gtest/gtest.h>

#include <GeographicLib/TransverseMercatorExact.hpp>
#include <GeographicLib/UTMUPS.hpp>
#include <cmath>

#include "core/geodesy/transverse_mercator.h"
#include "core/units.h"

namespace skyhaul {
namespace {

constexpr double kAccuracy_m = 1e-6;
constexpr double kAccuracy_deg = 1e-11;  // 1.1 micrometres of a meridian

// The peer computes its exact projection from elliptic functions instead of a series.
const GeographicLib::TransverseMercatorExact& Peer() {
  return GeographicLib::TransverseMercatorExact::UTM();
}

TEST(TransverseMercator, AgreesWithThePeerFarFromItsMeridian) {
  constexpr double kRadian_deg = 180 / kPi;
  for (int lat_deg = -90; lat_deg <= 90; lat_deg += 3) {
    for (int lon_deg = -34; lon_deg <= 34; lon_deg += 2) {
      double east_m = 0;
      double north_m = 0;
      Peer().Forward(0, lat_deg, lon_deg, east_m, north_m);
      const MercatorAngles angles = {lat_deg / kRadian_deg, lon_deg / kRadian_deg};
      const MercatorPosition ours = ToTransverseMercator(angles);
      ASSERT_NEAR(ours.east_m, east_m / 0.9996, kAccuracy_m) << lat_deg << ' ' << lon_deg;
      ASSERT_NEAR(ours.north_m, north_m / 0.9996, kAccuracy_m) << lat_deg << ' ' << lon_deg;
      const MercatorAngles back = FromTransverseMercator(ours);
      ASSERT_NEAR(back.lat_rad * kRadian_deg, lat_deg, kAccuracy_deg) << lon_deg;
      const double lon_error_deg = back.lon_rad * kRadian_deg - lon_deg;
      ASSERT_LE(std::fabs(lon_error_deg * std::cos(angles.lat_rad)), kAccuracy_deg) << lat_deg;
    }
  }
}

void ExpectPeerAgrees(double lat_deg, double lon_deg) {
  SCOPED_TRACE(std::to_string(lat_deg) + ' ' + std::to_string(lon_deg));
  const UtmPosition utm = UtmFromDegrees(lat_deg, lon_deg);
  ASSERT_EQ(utm.zone,
            GeographicLib::UTMUPS::StandardZone(lat_deg, lon_deg, GeographicLib::UTMUPS::UTM));
  double easting_m = 0;
  double northing_m = 0;
  Peer().Forward(utm.zone * 6 - 183, lat_deg, lon_deg, easting_m, northing_m);
  EXPECT_NEAR(utm.easting_m, easting_m + 500000, kAccuracy_m);
  EXPECT_NEAR(utm.northing_m, northing_m + (lat_deg < 0 ? 10000000 : 0), kAccuracy_m);
  const auto back = DegreesFromUtm(utm);
  ASSERT_TRUE(back);
  EXPECT_NEAR(back->lat_deg, lat_deg, kAccuracy_deg);
  const double lon_error_deg = std::remainder(back->lon_deg - lon_deg, 360);
  EXPECT_LE(std::fabs(lon_error_deg) * std::cos(lat_deg * kPi / 180), kAccuracy_deg);
}

TEST(Utm, AgreesWithThePeerAtEveryBorder) {
  constexpr double kStep_deg = 1e-9;
  for (const double lat_deg : {-90 + kStep_deg, -8.0, 0.0, 40.0, 56.0, 64.0, 72.0, 90.0}) {
    for (int border_deg = -180; border_deg <= 180; border_deg += 3) {
      for (const double offset_deg : {-kStep_deg, 0.0, kStep_deg}) {
        const double lon_deg = border_deg + offset_deg;
        if (std::fabs(lon_deg) > 180) continue;
        ExpectPeerAgrees(lat_deg, lon_deg);
        ExpectPeerAgrees(lat_deg - kStep_deg, lon_deg);
      }
    }
  }
}

TEST(UtmBand, IsThatOfTheLatitude) {
  const std::pair<double, char> cases[] = {
      {-89, 'C'}, {-0.001, 'M'}, {0, 'N'}, {71.99, 'W'}, {89, 'X'}};
  for (const auto& [lat_deg, band] : cases) EXPECT_EQ(UtmBand(lat_deg), band) << lat_deg;
}

TEST(DegreesFromUtm, RefusesWhatIsNoPlace) {
  const double nan = std::nan("");
  const std::pair<UtmPosition, bool> cases[] = {
      // 46.2 north is no band that begins at 48; 47.8 is within a degree of it.
      {{32, 'U', 400000, 5120000}, false},
      {{32, 'U', 400000, 5300000}, true},
      {{32, 'N', 400000, 5120000}, true},
      {{32, 'S', 400000, 5120000}, false},
      {{0, 'T', 400000, 5120000}, false},
      {{61, 'T', 400000, 5120000}, false},
      {{32, 'I', 400000, 5120000}, false},
      {{32, 'T', -1, 5120000}, false},
      {{32, 'T', 1000001, 5120000}, false},
      {{32, 'X', 500000, 9997965}, true},
      {{32, 'X', 500000, 9997990}, false},
      {{32, 'N', 500000, -1}, false},
      {{32, 'M', 500000, 10000001}, false},
      {{32, 'T', nan, 5120000}, false},
      {{32, 'T', 400000, nan}, false},
      // A place of zone 33 written in zone 32.
      {{32, 't', 845000, 5160000}, true},
  };
  for (const auto& [position, good] : cases) {
    EXPECT_EQ(DegreesFromUtm(position).has_value(), good)
        << position.zone << position.band << ' ' << position.northing_m;
  }
}

}  // namespace
}  // namespace skyhaul
