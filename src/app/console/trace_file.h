#pragma once

#include <span>
#include <string>

#include "core/operation.h"
#include "transport/log_file.h"

namespace skyhaul {

// From now on the conversation of every job is appended to the file of that path; trace must stay
// where it is until StopTracing(). Does nothing with an empty path. files are those that the run
// reads or writes. Returns 0, or -1 after a message when the file cannot be written or is one of
// them.
int StartTracing(LogFile& trace, const std::string& path, std::span<const std::string> files,
                 const Operation& operation);

// Ends it, and shows a message when the file could not take all of it.
void StopTracing(LogFile& trace, const Operation& operation);

}  // namespace skyhaul
