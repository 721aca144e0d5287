#pragma once

#include <vector>

#include "core/airspace.h"

namespace skyhaul {

struct ArcEnds {
  AirspacePosition start;
  AirspacePosition end;
};

// The position at a true bearing in degrees and a distance in metres (0 to 20 000 km) from another,
// on the WGS-84 ellipsoid: right to half a semicircle, 5 mm, at any latitude.
AirspacePosition PositionFrom(AirspacePosition centre, double bearing_deg, double distance_m);

// Where an arc by bearings begins and ends on the ground.
ArcEnds EndsOfArc(const AirspaceSegment& arc);

// The outline as a row of points, in the order of the segments and not closed. A point stays, an
// arc becomes points at equal angles of at most step_deg (0.01 to 90; others are clamped; a
// hundredth more is let pass, so that the same arc after rounding has as many points), both ends
// among them, a circle the same from north on. An arc whose ends have the same bearing is a whole
// turn; its first point then comes twice. The radius of an arc by points is that of its start and
// changes evenly to that of its end. An arc whose ends are nearly opposite its centre on the globe
// keeps only its ends.
std::vector<AirspacePosition> OutlinePoints(const CtrRecord& airspace, double step_deg);

}  // namespace skyhaul
