#pragma once

#include <span>
#include <string>
#include <string_view>

#include "core/track_point.h"

namespace skyhaul::ozi {

// Writes an OziExplorer track file, .plt, in Windows-1252 on WGS 84, lines ended by CR LF. One
// altitude fits, see formats/common/track_altitude.h; it is written in feet with one decimal, times
// as spreadsheet days to 9 ms, positions to 1 cm; the extra values are left out. A track without
// points gives the header alone. The description (UTF-8) is the name under which OziExplorer lists
// the track.
std::string WriteTrack(std::span<const TrackPoint> points, std::string_view description);

}  // namespace skyhaul::ozi
