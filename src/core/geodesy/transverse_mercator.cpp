#include "core/geodesy/transverse_mercator.h"

#include <cmath>

#include "core/geodesy/ellipsoid.h"

// Legend, after the paper: n third flattening, e eccentricity, tau tangent of the latitude, xi and
// eta northing and easting on a sphere of radius one; a prime marks the conformal latitude and the
// coordinates on the conformal sphere.

namespace skyhaul {

namespace {

constexpr double kN = kThirdFlattening;
constexpr double kN2 = kN * kN;
constexpr double kN3 = kN2 * kN;
constexpr double kN4 = kN3 * kN;
constexpr double kN5 = kN4 * kN;
constexpr double kN6 = kN5 * kN;

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

// Equations 7 to 9. tan(lat) of a pole is about 1.6e16 and stays finite in all of it.
double ConformalTau(double tau) {
  const double e = std::sqrt(kEccentricitySquared);
  const double secant = std::sqrt(1 + tau * tau);
  // tau / secant is the sine of the latitude, at most 1. Times e, which is 0.08, it stays far from
  // where atanh() has no value.
  const double sigma = std::sinh(e * std::atanh(e * tau / secant));
  return tau * std::sqrt(1 + sigma * sigma) - sigma * secant;
}

// Equations 19 to 21: Newton's method. Two steps reach the last bits from this start, so that the
// number of steps needs no test.
double TauFromConformal(double conformal_tau) {
  constexpr int kSteps = 4;
  // The start is right for small latitudes and near enough for all others.
  double tau = conformal_tau / (1 - kEccentricitySquared);
  for (int i = 0; i < kSteps; ++i) {
    const double reached = ConformalTau(tau);
    tau += (conformal_tau - reached) / std::hypot(1.0, reached) *
           (1 + (1 - kEccentricitySquared) * tau * tau) /
           ((1 - kEccentricitySquared) * std::hypot(1.0, tau));
  }
  return tau;
}

struct Complex {
  double re = 0;  // xi
  double im = 0;  // eta
};

// The sum over k = 1..6 of c[k - 1] sin(2 k zeta) for a complex zeta, whose parts are the northing
// and the easting of equations 11 and 12. By C. W. Clenshaw's recurrence (Mathematical Tables and
// Other Aids to Computation 9, 1955), b[k] = c[k] + 2 cos(2 zeta) b[k + 1] - b[k + 2], which takes
// four transcendental functions instead of four for each term.
Complex SumOfSines(Complex zeta, const double (&c)[kOrder]) {
  const double sin = std::sin(2 * zeta.re);
  const double cos = std::cos(2 * zeta.re);
  const double sinh = std::sinh(2 * zeta.im);
  const double cosh = std::cosh(2 * zeta.im);
  const Complex twice_cos = {2 * cos * cosh, -2 * sin * sinh};
  Complex b;
  Complex b_before;
  // From the last term to the first: small terms are added up before large ones.
  for (int k = kOrder; k-- > 0;) {
    const Complex next = {c[k] + twice_cos.re * b.re - twice_cos.im * b.im - b_before.re,
                          twice_cos.re * b.im + twice_cos.im * b.re - b_before.im};
    b_before = b;
    b = next;
  }
  // sin(2 zeta), the factor that the recurrence leaves to the end.
  const Complex sine = {sin * cosh, cos * sinh};
  return {sine.re * b.re - sine.im * b.im, sine.re * b.im + sine.im * b.re};
}

}  // namespace

MercatorPosition ToTransverseMercator(const MercatorAngles& angles) {
  // atan2 puts longitudes of more than 90 degrees from the meridian beyond the pole.
  const double tau = ConformalTau(std::tan(angles.lat_rad));
  const double cos_lon = std::cos(angles.lon_rad);
  const Complex sphere = {
      std::atan2(tau, cos_lon),
      std::asinh(std::sin(angles.lon_rad) / std::sqrt(tau * tau + cos_lon * cos_lon))};
  const Complex correction = SumOfSines(sphere, kAlpha);
  return {.east_m = kRectifyingRadius_m * (sphere.im + correction.im),
          .north_m = kRectifyingRadius_m * (sphere.re + correction.re)};
}

MercatorAngles FromTransverseMercator(const MercatorPosition& position) {
  const Complex plane = {position.north_m / kRectifyingRadius_m,
                         position.east_m / kRectifyingRadius_m};
  const Complex correction = SumOfSines(plane, kBeta);
  const double xi = plane.re - correction.re;
  const double eta = plane.im - correction.im;
  // The conformal latitude's tangent, from which Newton's method finds the geographic one.
  const double tau = std::sin(xi) / std::hypot(std::sinh(eta), std::cos(xi));
  return {.lat_rad = std::atan(TauFromConformal(tau)),
          .lon_rad = std::atan2(std::sinh(eta), std::cos(xi))};
}

}  // namespace skyhaul
