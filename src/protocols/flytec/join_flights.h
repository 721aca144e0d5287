#pragma once

#include <cstdint>
#include <vector>

#include "core/flight.h"

namespace skyhaul::flytec {

inline constexpr uint32_t kLongestGap_s = 3600;

enum class JoinResult { kJoined, kOverlap, kGap };

// Joins downloaded flights, none of them empty, into one in the order of time. A flight must not
// start before the one ahead of it has ended, nor more than kLongestGap_s after that; otherwise
// the flights are left as they are. The joined flight has no instrument text, because no signature
// covers it as a whole; its index is the earliest flight's.
JoinResult JoinFlights(std::vector<Flight>& flights);

}  // namespace skyhaul::flytec
