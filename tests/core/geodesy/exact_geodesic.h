#pragma once

#include <GeographicLib/Geodesic.hpp>

#include "core/units.h"

namespace skyhaul {

// What GeographicLib says, in degrees and metres.
struct ExactCourse {
  double distance_m = 0;
  double bearing_deg = 0;
};

inline ExactCourse ExactInverse(double lat1, double lon1, double lat2, double lon2) {
  ExactCourse course;
  double end_bearing_deg = 0;
  GeographicLib::Geodesic::WGS84().Inverse(lat1, lon1, lat2, lon2, course.distance_m,
                                           course.bearing_deg, end_bearing_deg);
  return course;
}

// Between two places in semicircles.
template <typename Place>
double ExactApart_m(const Place& from, const Place& to) {
  return ExactInverse(SemicirclesToDegrees(from.lat), SemicirclesToDegrees(from.lon),
                      SemicirclesToDegrees(to.lat), SemicirclesToDegrees(to.lon))
      .distance_m;
}

struct ExactPlace {
  double lat_deg = 0;
  double lon_deg = 0;
};

inline ExactPlace ExactDirect(double lat_deg, double lon_deg, double bearing_deg,
                              double distance_m) {
  ExactPlace place;
  GeographicLib::Geodesic::WGS84().Direct(lat_deg, lon_deg, bearing_deg, distance_m, place.lat_deg,
                                          place.lon_deg);
  return place;
}

}  // namespace skyhaul
