#pragma once

#include <span>
#include <string_view>

#include "instruments/choices.h"

namespace skyhaul {

// The options of skyhaul-instrument for Choices::manners.
std::span<const Option> MannerOptions();

// Their part of --help.
std::string_view MannersHelp();

}  // namespace skyhaul
