#pragma once

#include <string_view>

namespace skyhaul::formatgeo {

// First lines, which tell the two forms of the list apart.
inline constexpr std::string_view kGeoHeading = "$FormatGEO";
inline constexpr std::string_view kUtmHeading = "$FormatUTM";

}  // namespace skyhaul::formatgeo
