#pragma once

#include <cstdint>
#include <vector>

#include "device/job.h"

namespace skyhaul {

inline constexpr uint32_t kLongestGap_s = 3600;

enum class JoinResult { kJoined, kOverlap, kGap };

// Joins downloaded tracks, none of them empty, into one log in the order of time. A track must not
// start before the one ahead of it has ended, nor more than kLongestGap_s after that; otherwise the
// tracks are left as they are. The joined log has no instrument text: nobody signed it as a whole.
JoinResult JoinTracks(std::vector<DownloadedTrack>& tracks);

}  // namespace skyhaul
