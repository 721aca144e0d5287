// Any bytes as an OziExplorer waypoint file: what is read must be in range and come back.

#include "formats/ozi/read_ozi.h"
#include "formats/ozi/write_ozi.h"
#include "fuzz/waypoint_file.h"

void skyhaul::Fuzz(std::string_view text) {
  constexpr WaypointFormat format = {ozi::LooksLikeWaypoints, ozi::ReadWaypoints,
                                     ozi::WriteWaypoints, IsSamePlaceAndTime};
  RequireWrittenBack(format, ReadWaypoints(format, text));
}
