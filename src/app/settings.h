#pragma once

#include <string>

#include "device/job_runner.h"
#include "formats/igc/write_igc.h"

namespace skyhaul {

// What a run works with when its command line says nothing else.
struct Settings {
  PortChoice port = {.automatic = true, .configured = {}};
  IgcHeaderTexts igc_header;
  bool igc_enl = false;             // write each fix's extra value into IGC files
  bool fai_rule = true;             // the greatest distance follows the FAI's rules
  int32_t loop_gap_m = 800;         // how far apart start and finish of a closed course may be
  uint32_t report_interval_s = 10;  // flight time between position reports to a client
};

}  // namespace skyhaul
