#pragma once

#include <cstdint>
#include <string>

namespace skyhaul::igc {

inline constexpr int kMaxFlightNumber = 35;

// Replaces every "$date" in a path by year, month and day and every "$time" by hour, minute and
// second (UTC) of a flight's first fix. The result may be longer than a path may be.
std::string ExpandNameTemplate(const std::string& path, uint32_t first_fix_time);

// The long file name of the flight-recorder rules: "2026-05-14-xsh-000-01.igc". Manufacturer and
// serial are 3 characters each and stand in the name as they are given, but an empty serial, as of
// an instrument that sends no A record, becomes "000"; the flight number of the day
// is 1..kMaxFlightNumber.
std::string LongName(uint32_t first_fix_time, const std::string& manufacturer,
                     const std::string& serial, int flight_number);

}  // namespace skyhaul::igc
