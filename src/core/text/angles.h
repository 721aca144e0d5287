#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace skyhaul {

// An angle as "DDMM.mmm" holds it, without its sign.
struct DegreesMinutes {
  uint32_t degrees = 0;  // at most 999
  double minutes = 0;  // 0 to below 100: whether 60 and more are accepted is for the caller to say
};

// Reads "DDMM.mmm" or "DDDMM.mmm": digits, of which the last two are minutes, then optionally a
// point with any number of decimals. Empty when there is no digit before the point or anything else
// in the text, or from 1000 degrees on.
std::optional<DegreesMinutes> ReadDegreesMinutes(std::string_view text);

}  // namespace skyhaul
