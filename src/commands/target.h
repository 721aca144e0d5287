#pragma once

#include <string>
#include <string_view>

#include "core/operation.h"
#include "files/formats.h"

namespace skyhaul {

// Call both before a transfer, so that what cannot be written is reported before the download and
// not after it.

// Whether files can be made in a folder. Returns 0, or -1 after a message with the title.
int CheckFolder(const Operation& operation, const std::string& folder, const char* title);

// Whether a file can be written: its format is one that is written, its path is not too long, its
// folder is there, and it does not exist unless it may be replaced. Returns 0, or -1 after a
// message titled "Writing file".
int CheckTarget(const Operation& operation, const std::string& path, std::string_view keyword,
                FileKind kind, bool overwrite);

}  // namespace skyhaul
