#include "formats/formatgeo/utm.h"

#include <algorithm>
#include <cmath>
#include <string_view>

#include "core/units.h"

namespace skyhaul {

namespace {

// Legend, after the paper: f flattening, n third flattening, e eccentricity, A radius of the
// rectifying sphere (times 2 pi it is the circumference of a meridian), phi and lambda latitude and
// longitude, tau tangent of the latitude, xi and eta northing and easting on a sphere of radius
// one; a prime marks the conformal latitude and the coordinates on the conformal sphere.

constexpr double kEquatorRadius_m = 6378137;
constexpr double kF = 1 / 298.257223563;
constexpr double kN = kF / (2 - kF);
constexpr double kN2 = kN * kN;
constexpr double kN3 = kN2 * kN;
constexpr double kN4 = kN3 * kN;
constexpr double kN5 = kN4 * kN;
constexpr double kN6 = kN5 * kN;
constexpr double kRectifyingRadius_m =
    kEquatorRadius_m / (1 + kN) * (1 + kN2 / 4 + kN4 / 64 + kN6 / 256);
constexpr double kESquared = kF * (2 - kF);

constexpr double kCentralScale = 0.9996;
constexpr double kFalseEasting_m = 500000;
constexpr double kFalseNorthing_m = 10000000;
constexpr double kLargestEasting_m = 1000000;
constexpr double kRadian_deg = kPi / 180;

constexpr int kOrder = 6;

// Equation 35: from the conformal sphere to the ellipsoid's transverse Mercator plane.
constexpr double kAlpha[kOrder] = {
    kN / 2 - kN2 * 2 / 3 + kN3 * 5 / 16 + kN4 * 41 / 180 - kN5 * 127 / 288 + kN6 * 7891 / 37800,
    kN2 * 13 / 48 - kN3 * 3 / 5 + kN4 * 557 / 1440 + kN5 * 281 / 630 - kN6 * 1983433 / 1935360,
    kN3 * 61 / 240 - kN4 * 103 / 140 + kN5 * 15061 / 26880 + kN6 * 167603 / 181440,
    kN4 * 49561 / 161280 - kN5 * 179 / 168 + kN6 * 6601661 / 7257600,
    kN5 * 34729 / 80640 - kN6 * 3418889 / 1995840,
    kN6 * 212378941 / 319334400,
};

// Equation 36: the way back.
constexpr double kBeta[kOrder] = {
    kN / 2 - kN2 * 2 / 3 + kN3 * 37 / 96 - kN4 / 360 - kN5 * 81 / 512 + kN6 * 96199 / 604800,
    kN2 / 48 + kN3 / 15 - kN4 * 437 / 1440 + kN5 * 46 / 105 - kN6 * 1118711 / 3870720,
    kN3 * 17 / 480 - kN4 * 37 / 840 - kN5 * 209 / 4480 + kN6 * 5569 / 90720,
    kN4 * 4397 / 161280 - kN5 * 11 / 504 - kN6 * 830251 / 7257600,
    kN5 * 4583 / 161280 - kN6 * 108847 / 3991680,
    kN6 * 20648693 / 638668800,
};

constexpr std::string_view kBands = "CDEFGHJKLMNPQRSTUVWX";
constexpr double kFirstBand_deg = -80;
constexpr double kBandHeight_deg = 8;

size_t BandIndex(double lat_deg) {
  const double index = std::floor((lat_deg - kFirstBand_deg) / kBandHeight_deg);
  return static_cast<size_t>(std::clamp(index, 0.0, static_cast<double>(kBands.size() - 1)));
}

double CentralMeridian_deg(int zone) {
  return zone * 6.0 - 183;
}

// Equations 7 to 9.
double ConformalTau(double tau) {
  const double e = std::sqrt(kESquared);
  const double secant = std::hypot(1.0, tau);
  const double sigma = std::sinh(e * std::atanh(e * tau / secant));
  return tau * std::hypot(1.0, sigma) - sigma * secant;
}

// Equations 19 to 21: Newton's method; two steps reach the last bits from this start.
double TauFromConformal(double conformal_tau) {
  constexpr int kSteps = 4;
  double tau = conformal_tau / (1 - kESquared);
  for (int i = 0; i < kSteps; ++i) {
    const double reached = ConformalTau(tau);
    tau += (conformal_tau - reached) / std::hypot(1.0, reached) *
           (1 + (1 - kESquared) * tau * tau) / ((1 - kESquared) * std::hypot(1.0, tau));
  }
  return tau;
}

struct PlanePoint {
  double xi = 0;   // northward
  double eta = 0;  // eastward
};

// Adds the terms of one of the two series with a sign: plus kAlpha or minus kBeta.
PlanePoint AddSeries(const PlanePoint& point, const double (&coefficients)[kOrder], double sign) {
  PlanePoint sum = point;
  for (int i = 0; i < kOrder; ++i) {
    const double multiple = 2.0 * (i + 1);
    const double c = sign * coefficients[i];
    sum.xi += c * std::sin(multiple * point.xi) * std::cosh(multiple * point.eta);
    sum.eta += c * std::cos(multiple * point.xi) * std::sinh(multiple * point.eta);
  }
  return sum;
}

double Within180(double lon_deg) {
  return lon_deg - 360 * std::floor((lon_deg + 180) / 360);
}

char Capital(char letter) {
  return static_cast<char>(letter >= 'a' && letter <= 'z' ? letter - 'a' + 'A' : letter);
}

// Lists made in one go give places just over a border the letter of the others.
bool BandFits(char band, double lat_deg) {
  constexpr double kTolerance_deg = 1;
  const size_t index = kBands.find(band);
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
  const double lambda = Within180(lon_deg - CentralMeridian_deg(position.zone)) * kRadian_deg;
  const double tau = ConformalTau(std::tan(lat_deg * kRadian_deg));
  const PlanePoint sphere = {
      .xi = std::atan2(tau, std::cos(lambda)),
      .eta = std::asinh(std::sin(lambda) / std::hypot(tau, std::cos(lambda)))};
  const PlanePoint plane = AddSeries(sphere, kAlpha, 1);
  constexpr double kScale_m = kCentralScale * kRectifyingRadius_m;
  position.easting_m = kFalseEasting_m + kScale_m * plane.eta;
  position.northing_m = kScale_m * plane.xi + (lat_deg < 0 ? kFalseNorthing_m : 0);
  return position;
}

std::optional<UtmDegrees> DegreesFromUtm(const UtmPosition& position) {
  // A pole's northing that was rounded to whole metres may lie half a metre beyond it.
  constexpr double kQuarter = kPi / 2 + 1e-6;
  constexpr double kScale_m = kCentralScale * kRectifyingRadius_m;
  const char band = Capital(position.band);
  if (position.zone < 1 || position.zone > 60) return std::nullopt;
  if (kBands.find(band) == std::string_view::npos) return std::nullopt;
  if (!(position.easting_m >= 0 && position.easting_m <= kLargestEasting_m)) return std::nullopt;
  const bool north = band >= 'N';
  const double northing_m = position.northing_m - (north ? 0 : kFalseNorthing_m);
  const PlanePoint plane = {.xi = northing_m / kScale_m,
                            .eta = (position.easting_m - kFalseEasting_m) / kScale_m};
  const double from_equator = north ? plane.xi : -plane.xi;
  if (!(from_equator >= 0 && from_equator <= kQuarter)) return std::nullopt;
  const PlanePoint sphere = AddSeries(plane, kBeta, -1);
  const double tau = std::sin(sphere.xi) / std::hypot(std::sinh(sphere.eta), std::cos(sphere.xi));
  const double lambda = std::atan2(std::sinh(sphere.eta), std::cos(sphere.xi));
  const UtmDegrees degrees = {
      .lat_deg = std::atan(TauFromConformal(tau)) / kRadian_deg,
      .lon_deg = Within180(CentralMeridian_deg(position.zone) + lambda / kRadian_deg)};
  if (!BandFits(band, degrees.lat_deg)) return std::nullopt;
  return degrees;
}

}  // namespace skyhaul
