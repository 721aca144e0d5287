#include "core/geodesy/geodesic.h"

#include <cmath>
#include <optional>

#include "core/geodesy/ellipsoid.h"
#include "core/units.h"

// The symbols are the paper's: U reduced latitude, sigma arc on the auxiliary sphere, sigma_m its
// middle from the equator, sigma1 that of the first position, alpha azimuth of the geodesic at the
// equator, L difference in longitude on the ellipsoid, lambda the same on the auxiliary sphere.

namespace skyhaul {

namespace {

constexpr double kTolerance_rad = 1e-12;  // 6 micrometres on the ground

// Rounding may carry the angle between positions on opposite meridians a little above pi.
constexpr double kHalfTurn_rad = kPi + 1e-9;

struct ReducedLatitude {
  double sin;
  double cos;
};

struct Series {
  double a;
  double b;
};

// The arc between the two positions, from one round of the inverse method.
struct Arc {
  double sigma;
  double sin_sigma;
  double cos_sigma;
  double sin_alpha;
  double cos_sq_alpha;
  double cos_2sigma_m;
};

ReducedLatitude Reduce(double lat_rad) {
  // Sine and cosine rather than the tangent, which has no value at a pole.
  // tan U = (1 - f) tan(latitude), with both sides as a point that is brought back to length 1.
  const double sin = (1 - kFlattening) * std::sin(lat_rad);
  const double cos = std::cos(lat_rad);
  const double length = std::hypot(sin, cos);
  return {sin / length, cos / length};
}

// Equations 3 and 4.
Series SeriesOf(double cos_sq_alpha) {
  const double u_sq = cos_sq_alpha * kSecondEccentricitySquared;
  return {1 + u_sq / 16384 * (4096 + u_sq * (-768 + u_sq * (320 - 175 * u_sq))),
          u_sq / 1024 * (256 + u_sq * (-128 + u_sq * (74 - 47 * u_sq)))};
}

// Equation 6.
double DeltaSigma(double b, double sin_sigma, double cos_sigma, double cos_2sigma_m) {
  const double cos_sq = cos_2sigma_m * cos_2sigma_m;
  return b * sin_sigma *
         (cos_2sigma_m +
          b / 4 *
              (cos_sigma * (2 * cos_sq - 1) -
               b / 6 * cos_2sigma_m * (4 * sin_sigma * sin_sigma - 3) * (4 * cos_sq - 3)));
}

// Equations 10 and 11: by how much the longitude on the sphere exceeds that on the ellipsoid.
double LongitudeExcess(double sigma, double sin_sigma, double cos_sigma, double sin_alpha,
                       double cos_sq_alpha, double cos_2sigma_m) {
  const double c = kFlattening / 16 * cos_sq_alpha * (4 + kFlattening * (4 - 3 * cos_sq_alpha));
  return (1 - c) * kFlattening * sin_alpha *
         (sigma +
          c * sin_sigma * (cos_2sigma_m + c * cos_sigma * (2 * cos_2sigma_m * cos_2sigma_m - 1)));
}

// Equations 14 to 18.
Arc ArcOf(const ReducedLatitude& u1, const ReducedLatitude& u2, double lambda) {
  Arc arc = {};
  arc.sin_sigma =
      std::hypot(u2.cos * std::sin(lambda), u1.cos * u2.sin - u1.sin * u2.cos * std::cos(lambda));
  // atan2 of both is exact for short arcs, where the cosine alone would lose half of its digits.
  arc.cos_sigma = u1.sin * u2.sin + u1.cos * u2.cos * std::cos(lambda);
  arc.sigma = std::atan2(arc.sin_sigma, arc.cos_sigma);
  // Equal or opposite points: the azimuth below would be 0 / 0.
  if (arc.sin_sigma == 0) return arc;
  arc.sin_alpha = u1.cos * u2.cos * std::sin(lambda) / arc.sin_sigma;
  arc.cos_sq_alpha = 1 - arc.sin_alpha * arc.sin_alpha;
  // On the equator the middle of the arc is not defined. Everything it enters is multiplied by
  // cos_sq_alpha, which is 0 there.
  const bool on_equator = arc.cos_sq_alpha <= 0;
  arc.cos_2sigma_m = on_equator ? 0 : arc.cos_sigma - 2 * u1.sin * u2.sin / arc.cos_sq_alpha;
  return arc;
}

// Iterates equation 11. Empty when lambda does not settle, or settles beyond half a turn: the
// shortest way then goes round the other side.
std::optional<double> SolveLambda(const ReducedLatitude& u1, const ReducedLatitude& u2,
                                  double longitude_rad) {
  // On the sphere the angle is a little larger than on the ellipsoid; the first guess leaves that
  // out.
  double lambda = longitude_rad;
  for (int i = 0; i < kGeodesicIterations; ++i) {
    const Arc arc = ArcOf(u1, u2, lambda);
    const double next =
        longitude_rad + LongitudeExcess(arc.sigma, arc.sin_sigma, arc.cos_sigma, arc.sin_alpha,
                                        arc.cos_sq_alpha, arc.cos_2sigma_m);
    const bool settled = std::abs(next - lambda) < kTolerance_rad;
    lambda = next;
    if (settled && std::abs(lambda) <= kHalfTurn_rad) return lambda;
    // Beyond half a turn: the solution found goes the long way round.
    if (settled) break;
  }
  return std::nullopt;
}

double WithinTurn(double angle_rad) {
  return angle_rad < 0 ? angle_rad + 2 * kPi : angle_rad;
}

}  // namespace

double GeodesicDistance_m(double lat1_rad, double lon1_rad, double lat2_rad, double lon2_rad) {
  return GeodesicInverse(lat1_rad, lon1_rad, lat2_rad, lon2_rad).distance_m;
}

GeodesicCourse GeodesicInverse(double lat1_rad, double lon1_rad, double lat2_rad, double lon2_rad) {
  constexpr GeodesicCourse kNone = {.distance_m = -1, .bearing_rad = -1};
  const ReducedLatitude u1 = Reduce(lat1_rad);
  const ReducedLatitude u2 = Reduce(lat2_rad);
  const std::optional<double> lambda =
      // remainder() brings any number of turns to half a turn at most, either way.
      SolveLambda(u1, u2, std::remainder(lon2_rad - lon1_rad, 2 * kPi));
  if (!lambda) return kNone;
  const Arc arc = ArcOf(u1, u2, *lambda);
  // sin_sigma is 0 between equal positions, and between antipodes that were not refused above.
  if (arc.sin_sigma == 0) return arc.cos_sigma > 0 ? GeodesicCourse{} : kNone;

  // Equations 19 and 20.
  const Series series = SeriesOf(arc.cos_sq_alpha);
  const double delta_sigma = DeltaSigma(series.b, arc.sin_sigma, arc.cos_sigma, arc.cos_2sigma_m);
  const double bearing_rad =
      std::atan2(u2.cos * std::sin(*lambda), u1.cos * u2.sin - u1.sin * u2.cos * std::cos(*lambda));
  return {.distance_m = kSemiMinorAxis_m * series.a * (arc.sigma - delta_sigma),
          .bearing_rad = WithinTurn(bearing_rad)};
}

GeodesicPosition GeodesicDestination(double lat_rad, double lon_rad, double bearing_rad,
                                     double distance_m) {
  const ReducedLatitude u1 = Reduce(lat_rad);
  const double sin_bearing = std::sin(bearing_rad);
  const double cos_bearing = std::cos(bearing_rad);
  // Equations 1 and 2.
  const double sigma1 = std::atan2(u1.sin, u1.cos * cos_bearing);
  const double sin_alpha = u1.cos * sin_bearing;
  const double cos_sq_alpha = 1 - sin_alpha * sin_alpha;
  const Series series = SeriesOf(cos_sq_alpha);

  // Equation 7. Each round shrinks the error by about 600, so that 10 are more than enough.
  const double first_sigma = distance_m / (kSemiMinorAxis_m * series.a);
  double sigma = first_sigma;
  for (int i = 0; i < 10; ++i) {
    sigma = first_sigma +
            DeltaSigma(series.b, std::sin(sigma), std::cos(sigma), std::cos(2 * sigma1 + sigma));
  }

  // Equations 8 and 9. The hypotenuse keeps the latitude of a pole exact.
  const double sin_sigma = std::sin(sigma);
  const double cos_sigma = std::cos(sigma);
  const double across = u1.sin * sin_sigma - u1.cos * cos_sigma * cos_bearing;
  const double sin_u2 = u1.sin * cos_sigma + u1.cos * sin_sigma * cos_bearing;
  const double lambda =
      std::atan2(sin_sigma * sin_bearing, u1.cos * cos_sigma - u1.sin * sin_sigma * cos_bearing);
  const double excess = LongitudeExcess(sigma, sin_sigma, cos_sigma, sin_alpha, cos_sq_alpha,
                                        std::cos(2 * sigma1 + sigma));
  return {.lat_rad = std::atan2(sin_u2, (1 - kFlattening) * std::hypot(sin_alpha, across)),
          .lon_rad = std::remainder(lon_rad + lambda - excess, 2 * kPi)};
}

}  // namespace skyhaul
