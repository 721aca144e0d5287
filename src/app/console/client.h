#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "commands/session.h"

namespace skyhaul {

// Sends a text to the client of a run, trying again until the patience is used up. A client that
// cannot be reached is only reported as a status. Does nothing without a client.
void NotifyClient(const Session& session, const std::string& client, const std::string& text,
                  uint32_t patience_ms = 0);

// Tells the client that the run has ended and what it has written: "Done=1", or "Done=0", and a
// path on each further line.
void NotifyEnd(const Session& session, const std::string& client, bool done,
               const std::vector<std::string>& written);

}  // namespace skyhaul
