#pragma once

#include <string>

namespace skyhaul {

// Removes the temporary files (see platform/temporary_name.h) that programs of this user which are
// dead have left in a folder. new_file is a file that was just made there: its time is the folder's
// own clock, which on a network differs from ours. What cannot be looked at stays.
void RemoveLeftovers(const std::string& folder, int new_file);

}  // namespace skyhaul
