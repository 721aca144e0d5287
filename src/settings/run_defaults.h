#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/operation.h"
#include "device/job_runner.h"
#include "formats/igc/write_igc.h"
#include "platform/platform.h"
#include "settings/values.h"

namespace skyhaul {

// The widest gap between start and finish of a closed course that a person may ask for.
inline constexpr int32_t kMostGap_m = 1'000'000;

// What a run works with where its request leaves something open.
struct RunDefaults {
  PortChoice port = {.automatic = true, .configured = {}};
  igc::HeaderTexts igc_header;
  bool igc_enl = false;             // write each fix's extra value into IGC files
  bool log_filter = true;           // leave fixes without a position out of files that are read
  bool fai_rule = true;             // the greatest distance follows the FAI's rules
  int32_t loop_gap_m = 800;         // how far apart start and finish of a closed course may be
  uint32_t report_interval_s = 10;  // flight time between position reports to a client
  // Where a received flight goes that cannot be saved where it should: the first that takes it.
  std::vector<std::string> rescue_folders;
};

// The defaults that the stored settings give.
// A header text that equals its default was never set by anyone: it stays empty. A port name that
// equals its default was never chosen: the instrument is looked for on all ports. "COM7" and
// "\\.\COM17", in upper or lower case, are the ports of these numbers, 1 to 9999, whatever the
// system calls them. A gap outside 0 to kMostGap_m metres is replaced by its default, with a
// status. Flights are rescued into the settings' IgcDir, the home folder or that of temporary
// files.
RunDefaults MakeRunDefaults(const SettingValues& values, const SettingValues& defaults,
                            const SerialFunctions& serial, const Operation& operation);

// The same from the settings that are stored now, without writing anything. When they cannot be
// read a message is shown and the defaults are taken.
RunDefaults LoadRunDefaults(const Platform& platform, const Operation& operation);

}  // namespace skyhaul
