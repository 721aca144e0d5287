#pragma once

#include "commands/session.h"
#include "formats/igc/read_track.h"

namespace skyhaul {

// How a command reads flights: as it was asked, and for the rest as the settings say.
inline igc::ReadOptions ReadOptionsOf(const Session& session, bool strict) {
  return {.strict = strict, .leave_out_unknown = session.defaults->log_filter};
}

}  // namespace skyhaul
