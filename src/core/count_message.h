#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace skyhaul {

// Fills a message template: each '%' becomes the next of the four numbers in decimal, the fifth and
// later ones repeat the fourth. There is no escape for a literal percent sign.
std::string FormatCountMessage(std::string_view text, uint32_t first = 0, uint32_t second = 0,
                               uint32_t third = 0, uint32_t fourth = 0);

}  // namespace skyhaul
