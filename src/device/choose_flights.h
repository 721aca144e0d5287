#pragma once

#include <cstdint>
#include <vector>

#include "device/job.h"

namespace skyhaul {

// Picks the flights that a job fetches from the list that it has read (job.data.track_list), as
// job.choice says: by their list numbers, the newest, or whatever the person picks. Shows the shell
// the list with what was picked. Fills chosen with indices (TrackListEntry::index), ascending.
// Returns their number, or -1 when there is nothing to fetch: after a message titled "Select track"
// when a number is not in the list, without one when the person picked nothing.
// The list must not be empty.
int ChooseFlights(const Job& job, std::vector<uint32_t>& chosen);

}  // namespace skyhaul
