#include "core/geodesy/utm.h"

#include <algorithm>
#include <cmath>
#include <string_view>

#include "core/geodesy/ellipsoid.h"
#include "core/geodesy/transverse_mercator.h"
#include "core/units.h"

namespace skyhaul {

namespace {

constexpr double kCentralScale = 0.9996;
constexpr double kFalseEasting_m = 500000;
constexpr double kFalseNorthing_m = 10000000;
constexpr double kLargestEasting_m = 1000000;
constexpr double kRadiansPerDegree = kPi / 180;

// I and O are left out because they look like digits.
constexpr std::string_view kBands = "CDEFGHJKLMNPQRSTUVWX";
constexpr double kFirstBand_deg = -80;
constexpr double kBandHeight_deg = 8;

size_t BandIndex(double lat_deg) {
  const double index = std::floor((lat_deg - kFirstBand_deg) / kBandHeight_deg);
  // X reaches from 72 to 84 degrees, so the index of its upper part is one too high.
  return static_cast<size_t>(std::clamp(index, 0.0, static_cast<double>(kBands.size() - 1)));
}

double CentralMeridian_deg(int zone) {
  // Zone 1 lies about 177 degrees west.
  return zone * 6.0 - 183;
}

double Within180(double lon_deg) {
  // 180 becomes -180, so that every meridian has one number and one zone.
  return lon_deg - 360 * std::floor((lon_deg + 180) / 360);
}

char Capital(char letter) {
  return static_cast<char>(letter >= 'a' && letter <= 'z' ? letter - 'a' + 'A' : letter);
}

// Lists made in one go give places just over a border the letter of the others.
bool BandFits(char band, double lat_deg) {
  constexpr double kTolerance_deg = 1;
  const size_t index = kBands.find(band);
  // Many lists write N for north and S for south. S is a band of the north, and cannot be told
  // apart.
  if (band == 'N' && lat_deg >= 0) return true;
  return BandIndex(lat_deg - kTolerance_deg) <= index &&
         index <= BandIndex(lat_deg + kTolerance_deg);
}

}  // namespace

char UtmBand(double lat_deg) {
  return kBands[BandIndex(lat_deg)];
}

int UtmZone(double lat_deg, double lon_deg) {
  const double lon = Within180(lon_deg);
  const int zone = static_cast<int>(std::floor((lon + 180) / 6)) + 1;
  const char band = UtmBand(lat_deg);
  // The exceptions of Norway and Svalbard; a longitude on a border belongs to the zone east of it.
  if (band == 'V' && lon >= 3 && lon < 12) return 32;
  if (band == 'X' && lon >= 0 && lon < 42) {
    if (lon < 9) return 31;
    if (lon < 21) return 33;
    return lon < 33 ? 35 : 37;
  }
  return zone;
}

UtmPosition UtmFromDegrees(double lat_deg, double lon_deg) {
  UtmPosition position = {.zone = UtmZone(lat_deg, lon_deg), .band = UtmBand(lat_deg)};
  // The difference of longitudes is taken in degrees, where zone borders and meridians are exact.
  const double from_meridian_deg = Within180(lon_deg - CentralMeridian_deg(position.zone));
  const MercatorPosition plane = ToTransverseMercator(
      {.lat_rad = lat_deg * kRadiansPerDegree, .lon_rad = from_meridian_deg * kRadiansPerDegree});
  position.easting_m = kFalseEasting_m + kCentralScale * plane.east_m;
  position.northing_m = kCentralScale * plane.north_m + (lat_deg < 0 ? kFalseNorthing_m : 0);
  return position;
}

std::optional<UtmDegrees> DegreesFromUtm(const UtmPosition& position) {
  // A pole's northing that was rounded to whole metres may lie half a metre beyond it.
  constexpr double kBeyondPole_m = 6;
  constexpr double kQuarter_m = kRectifyingRadius_m * kPi / 2 + kBeyondPole_m;
  const char band = Capital(position.band);
  if (position.zone < 1 || position.zone > 60) return std::nullopt;
  if (kBands.find(band) == std::string_view::npos) return std::nullopt;
  // Both ranges are written so that a NaN is refused as well.
  if (!(position.easting_m >= 0 && position.easting_m <= kLargestEasting_m)) return std::nullopt;
  const bool north = band >= 'N';
  // The hemisphere comes from the letter: the number alone fits both.
  const double northing_m = position.northing_m - (north ? 0 : kFalseNorthing_m);
  const MercatorPosition plane = {.east_m = (position.easting_m - kFalseEasting_m) / kCentralScale,
                                  .north_m = northing_m / kCentralScale};
  const double from_equator_m = north ? plane.north_m : -plane.north_m;
  if (!(from_equator_m >= 0 && from_equator_m <= kQuarter_m)) return std::nullopt;
  const MercatorAngles angles = FromTransverseMercator(plane);
  const UtmDegrees degrees = {.lat_deg = angles.lat_rad / kRadiansPerDegree,
                              .lon_deg = Within180(CentralMeridian_deg(position.zone) +
                                                   angles.lon_rad / kRadiansPerDegree)};
  if (!BandFits(band, degrees.lat_deg)) return std::nullopt;
  return degrees;
}

}  // namespace skyhaul
