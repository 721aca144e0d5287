// Any bytes as one of the two plain waypoint lists: the readers must survive them, and what either
// writer makes of the waypoints is read back as the same ones.

#include "core/text/charset.h"
#include "core/text/letter_case.h"
#include "core/text/scan.h"
#include "formats/formatgeo/read_formatgeo.h"
#include "formats/formatgeo/write_formatgeo.h"
#include "fuzz/waypoint_file.h"

namespace skyhaul {

namespace {

// Texts are written in plain letters. Longitudes are left out: they wrap at 180 degrees, and near a
// pole a metre is far.
template <int64_t kSemicircles>
bool IsSame(const FileWaypoint& before, const FileWaypoint& after) {
  return before.name == after.name &&
         TrimBlanks(ToAscii(before.description)) == after.description &&
         std::abs(int64_t{before.lat} - after.lat) <= kSemicircles;
}

constexpr WaypointFormat kForms[] = {
    {formatgeo::LooksLikeGeo, formatgeo::ReadGeo, formatgeo::WriteGeo, IsSame<18>},
    {formatgeo::LooksLikeUtm, formatgeo::ReadUtm, formatgeo::WriteUtm, IsSame<80>},
};

// A name is written as one word of plain letters, and a line whose name holds a position is
// misread.
bool HasPlainName(const FileWaypoint& waypoint) {
  return !waypoint.name.empty() && std::ranges::all_of(waypoint.name, IsLetter);
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
