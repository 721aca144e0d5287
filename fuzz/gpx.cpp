// Any bytes as a GPX file: what is read must be in range and come back, texts included.

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "formats/gpx/read_gpx.h"
#include "formats/gpx/write_gpx.h"

namespace {

void Require(bool holds) {
  if (!holds) __builtin_trap();
}

// U+FFFE and U+FFFF cannot be written to XML and come back as '?'.
bool HasUnwritable(const std::string& text) {
  return text.find("\xEF\xBF\xBE") != std::string::npos ||
         text.find("\xEF\xBF\xBF") != std::string::npos;
}

void RequireSameText(const std::string& read, const std::string& again) {
  Require(HasUnwritable(read) || read == again);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  skyhaul::gpx::LooksLike(text);
  skyhaul::WaypointFile file;
  std::string message;
  const int count = skyhaul::gpx::Read(text, file, message);
  if (count < 0) {
    Require(count == -1 && file.waypoints.empty() && file.notes.empty() && !message.empty());
    return 0;
  }
  Require(message.empty());
  skyhaul::WaypointFile again;
  Require(skyhaul::gpx::Read(skyhaul::gpx::Write(file.waypoints), again, message) == count);
  Require(again.notes.empty());
  for (size_t i = 0; i < file.waypoints.size(); ++i) {
    const skyhaul::FileWaypoint& read = file.waypoints[i];
    Require(again.waypoints[i].lat == read.lat && again.waypoints[i].lon == read.lon);
    Require(again.waypoints[i].time == read.time && again.waypoints[i].type == read.type);
    Require(std::isfinite(read.altitude_m));
    RequireSameText(read.name, again.waypoints[i].name);
    RequireSameText(read.description, again.waypoints[i].description);
  }
  return 0;
}
