#pragma once

#include <string>

#include "core/operation.h"
#include "platform/append_file.h"

namespace skyhaul {

// The file that takes the whole conversation of a run with instruments. It must stay where it is
// until StopTracing().
struct TraceFile {
  std::string path;
  AppendHandle handle = kNoAppendHandle;
  std::string problem;  // why it ends before the conversation does; empty: it does not
};

// From now on the conversation of every job is appended to the file. Does nothing with an empty
// path. Returns 0, or -1 after a message when the file cannot be written.
int StartTracing(TraceFile& file, const std::string& path, const Operation& operation);

// Ends it, and shows a message when the file could not take all of it.
void StopTracing(TraceFile& file, const Operation& operation);

}  // namespace skyhaul
