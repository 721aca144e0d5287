#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace skyhaul {

inline constexpr size_t kMaxPath = 259;
inline constexpr int kMaxFlightNumber = 35;

// Replaces every "$date" in a path by year, month and day and every "$time" by hour, minute and
// second (UTC) of a flight's first fix. Returns 0, or -1 when the result is longer than kMaxPath,
// which leaves expanded as it was.
int ExpandNameTemplate(const std::string& path, uint32_t first_fix_time, std::string& expanded);

// The long file name of the flight-recorder rules: "2026-05-14-xsh-000-01.igc". Manufacturer and
// serial are 3 characters each and stand in the name as they are given; the flight number of the
// day is 1..kMaxFlightNumber.
std::string IgcLongName(uint32_t first_fix_time, const std::string& manufacturer,
                        const std::string& serial, int flight_number);

}  // namespace skyhaul
