#pragma once

#include <cstdint>
#include <string_view>

#include "core/shell.h"

namespace skyhaul::flytec {

// Reads one line of the instrument's track list: "$PBRTL", number of tracks, track index, date
// dd.mm.yy (years from 2000 on), start time hh:mm:ss, duration hh:mm:ss, each of the last three in
// UTC. Returns null, or the message that says what is wrong with it. announced is the number of
// tracks.
const char* ParseTrackListLine(std::string_view line, TrackListEntry& entry, uint32_t& announced);

}  // namespace skyhaul::flytec
