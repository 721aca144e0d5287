#pragma once

#include <string>

#include "analysis/optimise.h"

namespace skyhaul {

// Reads a gap of 0 to kMostGap_m whole metres. Returns 0, or -1 with a message.
int ReadGap(const std::string& text, OptimiseSettings& settings, std::string& message);

// Reads "on" or "off". Returns 0, or -1 with a message.
int ReadFaiRule(const std::string& text, OptimiseSettings& settings, std::string& message);

}  // namespace skyhaul
