#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace skyhaul::flytec_simulator {

// The extremes of a flight, as the extended flight list has them.
struct FlightExtremes {
  int highest_m = 0;              // A1, the altitude
  int highest_above_start_m = 0;  // A2, a second altimeter set to 0 at the start
  int climbed_m = 0;              // A3, all climbs added up
  uint32_t interval_s = 0;        // between the first two fixes
  int best_climb_dm_s = 0;        // decimetres per second from fix to fix; not below 0
  int worst_sink_dm_s = 0;        // not above 0
  int fastest_km_h = 0;           // over ground, from fix to fix
};

// One flight in the instrument's memory.
struct StoredFlight {
  std::string igc_text = {};  // goes over the wire byte for byte
  uint32_t start_time = 0;    // of the first fix; see core/time_scale.h
  uint32_t duration_s = 0;
  FlightExtremes extremes = {};
};

inline constexpr size_t kMaxFlights = 99;  // the list counts them in two digits

// A flight for the memory: the text as it is, start and duration from its fixes. A text that does
// not pass as an IGC file is taken nevertheless, its times from whatever looks like a date and like
// fixes; they are 0 where nothing does, and it has no extremes.
StoredFlight FlightFromIgc(const std::string& igc_text);

// Puts the flights in the order in which the instrument lists them, the newest first.
void SortNewestFirst(std::vector<StoredFlight>& flights);

// The body of a flight's line in the flight list.
std::string FlightListBody(size_t total, size_t index, const StoredFlight& flight);

// The same in the extended list, which has the extremes too.
std::string ExtendedFlightListBody(size_t total, size_t index, const StoredFlight& flight);

}  // namespace skyhaul::flytec_simulator
