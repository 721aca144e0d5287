#pragma once

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <vector>

namespace skyhaul {

// The .igc files of the folder that SKYHAUL_FLIGHTS names, in order of their names; none without
// it.
inline std::vector<std::filesystem::path> RealFlights() {
  const char* folder = std::getenv("SKYHAUL_FLIGHTS");
  std::vector<std::filesystem::path> paths;
  std::error_code error;
  if (folder == nullptr) return paths;
  for (const auto& entry : std::filesystem::directory_iterator(folder, error)) {
    if (entry.path().extension() == ".igc") paths.push_back(entry.path());
  }
  std::sort(paths.begin(), paths.end());
  return paths;
}

}  // namespace skyhaul
