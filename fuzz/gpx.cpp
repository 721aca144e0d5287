// Any bytes as a GPX file: what is read must be in range and come back, texts included.

#include "formats/gpx/read_gpx.h"
#include "formats/gpx/write_gpx.h"
#include "fuzz/waypoint_file.h"

namespace skyhaul {

namespace {

// U+FFFE and U+FFFF cannot be written to XML and come back as '?'.
bool IsSameText(const std::string& before, const std::string& after) {
  return before == after || before.find("\xEF\xBF\xBE") != std::string::npos ||
         before.find("\xEF\xBF\xBF") != std::string::npos;
}

// Only has to survive: the reader takes an XML heading that the quick look does not see through, as
// <!DOCTYPE gpx [<!ENTITY a "b>"]>.
bool LooksLikeAny(std::string_view text) {
  gpx::LooksLike(text);
  return true;
}

bool IsSame(const FileWaypoint& before, const FileWaypoint& after) {
  return IsSamePlaceAndTime(before, after) && before.type == after.type &&
         IsSameText(before.name, after.name) && IsSameText(before.description, after.description);
}

}  // namespace

void Fuzz(std::string_view text) {
  const WaypointFormat format = {LooksLikeAny, gpx::Read, gpx::Write, IsSame};
  RequireWrittenBack(format, ReadWaypoints(format, text));
}

}  // namespace skyhaul
