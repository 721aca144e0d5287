#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace skyhaul {

// Names of files in the making. They tell which process makes the file, so that what a killed
// program has left over can be told from what another is still writing:
//
//   .2026-05-14-xxx-123-01.igc.4711.0.skyhaul-tmp

// A leftover is removed when it is that much older than a file that is made now beside it. A folder
// may be shared with computers whose processes cannot be seen here.
inline constexpr int64_t kLeftoverAge_s = 60;

// What follows a dot and the file's name, ".4711.0.skyhaul-tmp": the process and a number of its
// choice.
std::string TemporarySuffix(uint32_t process, unsigned number);

// The process in the name of such a file, without its folder; 0 for every other name.
uint32_t MakerOfTemporary(std::string_view name);

}  // namespace skyhaul
