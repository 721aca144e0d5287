// Any bytes as a CompeGPS waypoint file: what is read must be in range and come back.

#include "formats/compegps/read_compegps.h"
#include "formats/compegps/write_compegps.h"
#include "fuzz/waypoint_file.h"

void skyhaul::Fuzz(std::string_view text) {
  constexpr WaypointFormat format = {compegps::LooksLike, compegps::Read, compegps::Write,
                                     IsSamePlaceAndTime};
  RequireWrittenBack(format, ReadWaypoints(format, text));
}
