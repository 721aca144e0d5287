// Any bytes as one of the two plain waypoint lists: the readers must survive them, and what either
// writer makes of the waypoints is read back as the same ones.

#include "formats/formatgeo/read_formatgeo.h"
#include "formats/formatgeo/write_formatgeo.h"
#include "fuzz/waypoint_file.h"

namespace skyhaul {

namespace {

// Longitudes are left out: they wrap at 180 degrees, and near a pole a metre is far.
template <int64_t kSemicircles>
bool IsSame(const FileWaypoint& before, const FileWaypoint& after) {
  return before.name == after.name && before.description == after.description &&
         std::abs(int64_t{before.lat} - after.lat) <= kSemicircles;
}

constexpr WaypointFormat kForms[] = {
    {formatgeo::LooksLikeGeo, formatgeo::ReadGeo, formatgeo::WriteGeo, IsSame<18>},
    {formatgeo::LooksLikeUtm, formatgeo::ReadUtm, formatgeo::WriteUtm, IsSame<80>},
};

// The line of a name that holds a position itself is misread.
bool HasPlainName(const FileWaypoint& waypoint) {
  return waypoint.name.find_first_of("0123456789.+-") == std::string::npos;
}

}  // namespace

void Fuzz(std::string_view text) {
  for (const WaypointFormat& form : kForms) {
    const std::vector<FileWaypoint> waypoints = ReadWaypoints(form, text);
    if (!std::ranges::all_of(waypoints, HasPlainName)) continue;
    for (const WaypointFormat& other : kForms) RequireWrittenBack(other, waypoints);
  }
}

}  // namespace skyhaul
