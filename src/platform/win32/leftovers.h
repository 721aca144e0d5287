#pragma once

#include <string>

#include "platform/win32/windows_api.h"

namespace skyhaul {

// Removes the temporary files (see platform/temporary_name.h) that dead programs have left in a
// folder, whose path ends with its separator or is empty. new_file is a file that was just made
// there: its time is the folder's own clock, which on a network differs from ours.
void RemoveLeftovers(const std::wstring& folder, HANDLE new_file);

}  // namespace skyhaul
