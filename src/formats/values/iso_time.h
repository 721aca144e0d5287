#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "core/time_scale.h"

namespace skyhaul {

// Seconds since 1989-12-31 00:00:00 UTC for a calendar date and time read from a file. Returns 0,
// which stands for an unknown time, for dates that do not exist or that the time scale cannot hold.
// A leap second counts as the second before it.
uint32_t TimeFromFile(const CalendarTime& calendar);

// Reads "2024-05-01T12:34:56", with an optional fraction of the second (dropped) and an optional
// zone: "Z", "+02:00"; none means UTC. Returns the time as TimeFromFile does.
uint32_t ReadIsoTime(std::string_view text);

// Appends "2024-05-01T12:34:56Z", or with ".123" before the Z when there are milliseconds.
void AppendIsoTime(std::string& text, uint32_t time, uint32_t milliseconds);

}  // namespace skyhaul
