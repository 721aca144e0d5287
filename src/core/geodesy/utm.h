#pragma once

#include <optional>

namespace skyhaul {

// The universal transverse Mercator grid on WGS-84: zones, bands and coordinates as in the United
// States' Defense Mapping Agency, "The Universal Grids", TM 8358.2, 1989. Coordinates are right to
// 1 micrometre everywhere in a zone and its neighbours, both ways; see transverse_mercator.h.

struct UtmPosition {
  int zone = 0;           // 1..60
  char band = ' ';        // C..X without I and O; N and later are the northern hemisphere
  double easting_m = 0;   // the central meridian is 500,000
  double northing_m = 0;  // from the equator; on the southern hemisphere 10,000,000 more
};

// The zone of a place: 6 degrees each from 180 west on, except that the south-west of Norway
// belongs to 32 as a whole (band V) and Svalbard to the wider 31, 33, 35 and 37 (band X). A place
// on a border belongs to the zone east of it. Degrees within +-90 and +-180; 180 east is 180 west.
int UtmZone(double lat_deg, double lon_deg);

// The letter of a latitude: 8 degrees each from 80 south on, X is 12 wide. Nearer to the poles,
// where the grid has no letters of its own, the last ones go on.
char UtmBand(double lat_deg);

// A place in its own zone and band. Degrees within +-90 and +-180.
UtmPosition UtmFromDegrees(double lat_deg, double lon_deg);

struct UtmDegrees {
  double lat_deg = 0;  // -90..90
  double lon_deg = 0;  // -180..180, 180 itself excluded
};

// The place of a grid position. The zone is taken as given, because a list often keeps to one zone
// where its places spread into the next. Empty when there is no such zone or letter (small letters
// are taken), the easting is outside 0..1,000,000, the northing is beyond the pole or the equator,
// or the letter's band is more than a degree from the latitude. The letter N is taken for the whole
// northern hemisphere as well, because many lists mean that by it.
std::optional<UtmDegrees> DegreesFromUtm(const UtmPosition& position);

}  // namespace skyhaul
