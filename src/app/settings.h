#pragma once

#include <string>

#include "device/job_runner.h"
#include "formats/igc/write_igc.h"

namespace skyhaul {

// What a run works with when its command line says nothing else.
struct Settings {
  PortChoice port = {.automatic = true, .configured = {}};
  IgcHeaderTexts igc_header;
  uint32_t report_interval_s = 10;  // flight time between position reports to a client
};

}  // namespace skyhaul
