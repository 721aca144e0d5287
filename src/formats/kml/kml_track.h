#pragma once

#include <cstddef>
#include <limits>
#include <span>
#include <string>

#include "core/track_point.h"

namespace skyhaul::kml {

inline constexpr size_t kNoFix = std::numeric_limits<size_t>::max();

// What a KML file says about a track besides its fixes.
struct TrackInfo {
  std::string name = {};         // of the document; UTF-8
  std::string description = {};  // left out when empty; UTF-8
  size_t take_off = kNoFix;      // indices of fixes; none beyond the track gets a placemark
  size_t landing = kNoFix;
};

// Writes a KML 2.2 file, UTF-8, with the track as a timed gx:Track, one per segment inside a
// gx:MultiTrack when there are several, then the take-off's and the landing's placemarks. Element
// order is that of the KML 2.2 schema and of the gx extension's. Altitudes are above the sea: the
// one that formats/common/track_altitude.h chooses, in metres with one decimal; positions have 7
// decimals, 1 cm; times are UTC with milliseconds where a fix has some. The extra values are left
// out. A track without points gives a document without placemarks.
std::string WriteTrack(std::span<const TrackPoint> points, const TrackInfo& info);

}  // namespace skyhaul::kml
