#pragma once

#include "core/airspace.h"
#include "core/units.h"

namespace skyhaul {

inline AirspacePosition At(double lat_deg, double lon_deg) {
  return {RadiansToSemicircles(lat_deg / kDegreesPerRadian),
          RadiansToSemicircles(lon_deg / kDegreesPerRadian)};
}

}  // namespace skyhaul
