#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace skyhaul::compegps {

// The date and time that waypoints without a time have.
inline constexpr std::string_view kNoDate = "27-MAR-62";
inline constexpr std::string_view kNoTime = "00:00:00";

// Reads "01-MAY-24" or "01-May-2024" and "12:34:56", with an optional fraction (dropped), UTC. Two
// digits of a year from 90 on are the last century's. Returns false when the texts are no date and
// time; the time is 0, not known, for the two texts above and for dates that the time scale cannot
// hold.
bool ReadTime(std::string_view date_text, std::string_view time_text, uint32_t& time);

// Appends "01-MAY-24 12:34:56", four digits for a year from 2062 on, lest one of its days
// be taken for none; for 0 the two texts above.
void AppendTime(std::string& text, uint32_t time);

}  // namespace skyhaul::compegps
