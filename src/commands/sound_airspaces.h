#pragma once

#include <vector>

#include "core/airspace.h"
#include "core/operation.h"

namespace skyhaul {

// The airspaces that may be sent or written. Each damaged one is named with what is wrong, in a
// message with the title, and left out: a pilot would fly by an outline that nobody drew.
std::vector<CtrRecord> SoundAirspaces(const Operation& operation,
                                      const std::vector<CtrRecord>& airspaces, const char* title);

}  // namespace skyhaul
