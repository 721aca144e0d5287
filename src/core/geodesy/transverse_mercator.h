#pragma once

namespace skyhaul {

// The transverse Mercator projection of the WGS-84 ellipsoid, scale 1 on its central meridian.
//
// Formulas: the series of L. Krueger, 1912, to the sixth power of the third flattening, in the form
// of C. F. F. Karney, "Transverse Mercator with an accuracy of a few nanometers", Journal of
// Geodesy 85 (2011), 475-485. What the series leaves out is below 5 nm within 3900 km of the
// central meridian; with the rounding of double arithmetic the error is below 1 micrometre there,
// both ways. Farther off it grows; 90 degrees from the central meridian, on the equator, there is
// no position, and the result may be infinite or no number.

struct MercatorPosition {
  double east_m = 0;   // of the central meridian
  double north_m = 0;  // of the equator; beyond a pole it goes on growing
};

struct MercatorAngles {
  double lat_rad = 0;  // -pi/2..pi/2
  double lon_rad = 0;  // from the central meridian, -pi..pi
};

MercatorPosition ToTransverseMercator(const MercatorAngles& angles);

MercatorAngles FromTransverseMercator(const MercatorPosition& position);

}  // namespace skyhaul
