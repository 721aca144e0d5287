#pragma once

#include <string>

namespace skyhaul {

// The user's home folder as the environment names it, on Linux else as the list of users does;
// empty when it is not known.
std::string HomeFolder();

// The folder for temporary files.
std::string TemporaryFolder();

}  // namespace skyhaul
