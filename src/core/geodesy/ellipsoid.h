#pragma once

namespace skyhaul {

// The WGS-84 ellipsoid, defined by its first two numbers (National Geospatial-Intelligence Agency,
// "World Geodetic System 1984", NGA.STND.0036). The others follow from them.
inline constexpr double kSemiMajorAxis_m = 6378137;
inline constexpr double kFlattening = 1 / 298.257223563;

inline constexpr double kSemiMinorAxis_m = kSemiMajorAxis_m * (1 - kFlattening);
inline constexpr double kEccentricitySquared = kFlattening * (2 - kFlattening);
inline constexpr double kSecondEccentricitySquared =
    kEccentricitySquared / ((1 - kFlattening) * (1 - kFlattening));
inline constexpr double kThirdFlattening = kFlattening / (2 - kFlattening);

// Radius of the sphere whose meridians are as long as the ellipsoid's. The next term is n^8 / 64^2,
// 10^-26 of it.
inline constexpr double kRectifyingRadius_m = [] {
  constexpr double kNSquared = kThirdFlattening * kThirdFlattening;
  return kSemiMajorAxis_m / (1 + kThirdFlattening) *
         (1 + kNSquared / 4 * (1 + kNSquared / 16 * (1 + kNSquared / 4)));
}();

}  // namespace skyhaul
