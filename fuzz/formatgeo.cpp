// Any bytes as one of the two plain waypoint lists: the readers must survive them, and what the
// writers make of the waypoints is read back as the same ones.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "formats/formatgeo/read_formatgeo.h"
#include "formats/formatgeo/write_formatgeo.h"

namespace {

using skyhaul::FileWaypoint;
using skyhaul::WaypointFile;

struct Form {
  decltype(skyhaul::formatgeo::LooksLikeGeo)& looks_like;
  decltype(skyhaul::formatgeo::ReadGeo)& read;
  decltype(skyhaul::formatgeo::WriteGeo)& write;
  int64_t lat_tolerance;  // semicircles
};

constexpr Form kForms[] = {
    {skyhaul::formatgeo::LooksLikeGeo, skyhaul::formatgeo::ReadGeo, skyhaul::formatgeo::WriteGeo,
     18},
    {skyhaul::formatgeo::LooksLikeUtm, skyhaul::formatgeo::ReadUtm, skyhaul::formatgeo::WriteUtm,
     80},
};

void Require(bool holds) {
  if (!holds) __builtin_trap();
}

// The line of a name that holds a position itself is misread.
bool IsPlainName(std::string_view name) {
  return name.find_first_of("0123456789.+-") == std::string_view::npos;
}

void RequireWrittenBack(const Form& form, const std::vector<FileWaypoint>& waypoints) {
  for (const FileWaypoint& waypoint : waypoints) {
    if (!IsPlainName(waypoint.name)) return;
  }
  WaypointFile file;
  std::string message;
  const int count = form.read(form.write(waypoints), file, message);
  Require(count == static_cast<int>(waypoints.size()) && file.notes.empty());
  for (size_t i = 0; i < waypoints.size(); ++i) {
    Require(file.waypoints[i].name == waypoints[i].name);
    Require(file.waypoints[i].description == waypoints[i].description);
    Require(std::abs(int64_t{file.waypoints[i].lat} - waypoints[i].lat) <= form.lat_tolerance);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  for (const Form& form : kForms) {
    WaypointFile file = {.waypoints = {{}}, .notes = {}};
    std::string message;
    const int count = form.read(text, file, message);
    Require(count == -1 || form.looks_like(text));
    if (count < 0) {
      Require(file.waypoints.empty() && file.notes.empty() && !message.empty());
      continue;
    }
    Require(file.waypoints.size() == static_cast<size_t>(count) && message.empty());
    for (const FileWaypoint& waypoint : file.waypoints) {
      Require(std::abs(int64_t{waypoint.lat}) <= 1 << 30);
    }
    for (const Form& other : kForms) RequireWrittenBack(other, file.waypoints);
  }
  return 0;
}
