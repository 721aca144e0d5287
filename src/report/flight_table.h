#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/shell.h"

namespace skyhaul {

// The flight list as a table, one line per flight; a mark stands before the chosen ones, which are
// named by TrackListEntry::index.
std::string FlightTable(const std::vector<TrackListEntry>& list,
                        const std::vector<uint32_t>& chosen);

// A flight of the list as a client is told: "Flight=3,2026-05-24,09:12:00,02:10:33".
std::string FlightNotice(const TrackListEntry& entry);

}  // namespace skyhaul
