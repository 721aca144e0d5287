#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "core/time_scale.h"

namespace skyhaul {

// "2024-06-01", or "20240601" with an empty separator.
std::string DateText(const CalendarTime& calendar, std::string_view separator = "-");

// "10:05:45", or "100545" with an empty separator.
std::string TimeText(const CalendarTime& calendar, std::string_view separator = ":");

// A duration, or a time of day in seconds, as "02:05:45"; from 100 hours on with more digits.
std::string DurationText(uint32_t seconds);

// ISO 8601: "2024-05-01T12:34:56Z", or with ".123" before the Z when there are milliseconds.
void AppendIsoTime(std::string& text, uint32_t time, uint32_t milliseconds);

// Reads "2024-05-01T12:34:56", with an optional fraction of the second (dropped) and an optional
// zone: "Z", "+02:00"; none means UTC. Returns the time as TimeFromFile does.
uint32_t ReadIsoTime(std::string_view text);

// Seconds since 1989-12-31 00:00:00 UTC for a calendar date and time read from a file. Returns 0,
// which stands for an unknown time, for dates that do not exist or that the time scale cannot hold.
// A leap second counts as the second before it.
uint32_t TimeFromFile(const CalendarTime& calendar);

}  // namespace skyhaul
