#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "commands/download_flights.h"
#include "core/flight.h"

namespace skyhaul {

// Call before the transfer: whether the target can take that many flights, or 1 when their number
// is not known yet. Returns 0, or -1 after a message.
int CheckFlightTarget(const Operation& operation, const FlightTarget& target, size_t flights);

// Saves flights in the order in which they start; one that cannot be saved does not keep the others
// from it. One that cannot be saved where it should goes to the first of the defaults'
// rescue_folders that takes it, with a message. Appends the paths written, those too. Returns 0, or
// -1 after a message when one could not be saved where it should.
// The flights are sorted by their start and otherwise left as they are.
int SaveFlights(const Session& session, const DownloadFlightsRequest& request,
                const InstrumentIdentity& identity, std::vector<Flight>& flights,
                std::vector<std::string>& written);

}  // namespace skyhaul
