#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace skyhaul::flytec_simulator {

// One flight in the instrument's memory.
struct StoredFlight {
  std::string igc_text = {};  // goes over the wire byte for byte
  uint32_t start_time = 0;    // of the first fix; see core/time_scale.h
  uint32_t duration_s = 0;
};

inline constexpr size_t kMaxFlights = 99;  // the list counts them in two digits

// A flight for the memory: the text as it is, start and duration from its fixes. A text that does
// not pass as an IGC file is taken nevertheless, its times from whatever looks like a date and like
// fixes; they are 0 where nothing does.
StoredFlight FlightFromIgc(const std::string& igc_text);

// Puts the flights in the order in which the instrument lists them, the newest first.
void SortNewestFirst(std::vector<StoredFlight>& flights);

// The body of a flight's line in the flight list.
std::string FlightListBody(size_t total, size_t index, const StoredFlight& flight);

}  // namespace skyhaul::flytec_simulator
