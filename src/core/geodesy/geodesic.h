#pragma once

namespace skyhaul {

// Geodesics on the WGS-84 ellipsoid after T. Vincenty, "Direct and inverse solutions of geodesics
// on the ellipsoid with application of nested equations", Survey Review XXIII no. 176, 1975. All
// angles are radians: latitudes -pi/2..pi/2, north positive; longitudes east positive, any number
// of turns; bearings clockwise from true north.

// The way from one position to another. When there is no result both values are negative.
struct GeodesicCourse {
  double distance_m = 0;
  double bearing_rad = 0;  // at the first position, 0 to 2 pi; 0 between equal positions
};

struct GeodesicPosition {
  double lat_rad = 0;
  double lon_rad = 0;  // -pi..pi
};

// Distance in metres, right to 0.1 mm up to 19 900 km. Negative when the iteration does not settle
// within kGeodesicIterations rounds or settles on the far side of the earth: that happens only to
// positions that are nearly antipodal, more than 19 900 km apart. An angle that is not a number
// gives a negative result too.
double GeodesicDistance_m(double lat1_rad, double lon1_rad, double lat2_rad, double lon2_rad);

// The same distance with the bearing, which is right to 1e-9 rad between positions at least 1 km
// apart and 1 degree off the antipode. At a pole it is that of the meridian of the longitude given.
GeodesicCourse GeodesicInverse(double lat1_rad, double lon1_rad, double lat2_rad, double lon2_rad);

// The position at a bearing and a distance of 0 to 20 000 km, right to 0.1 mm. It always exists.
GeodesicPosition GeodesicDestination(double lat_rad, double lon_rad, double bearing_rad,
                                     double distance_m);

// Rounds of the inverse method. Positions up to 19 900 km apart settle in fewer.
inline constexpr int kGeodesicIterations = 200;

}  // namespace skyhaul
