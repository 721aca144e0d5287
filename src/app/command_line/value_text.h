#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace skyhaul {

// A decimal number that fills the whole text and fits. Returns nothing for anything else, a plus
// sign among it; only the signed form takes a minus sign.
std::optional<uint32_t> NumberFromText(std::string_view text);
std::optional<int32_t> SignedNumberFromText(std::string_view text);

// A decimal number of seconds of any length, with or without a minus sign, moved into
// 0..kMaxTimeoutSeconds. Returns nothing when it is no number.
std::optional<uint32_t> TimeoutFromText(std::string_view text);

// "hh:mm" or "hh:mm:ss" as seconds of the day. Returns nothing for anything else.
std::optional<uint32_t> SecondOfDayFromText(std::string_view text);

// A list such as "1,3-5" of numbers 1..kMaxTrackNumber and ranges of them, as ascending numbers,
// each once. Returns nothing when the list is malformed or has more than kMaxTracks different
// numbers.
std::optional<std::vector<uint32_t>> TrackListFromText(std::string_view text);

}  // namespace skyhaul
