#include "app/console/trace_file.h"

#include <algorithm>

#include "platform/file.h"
#include "transport/trace_log.h"

namespace skyhaul {

namespace {

constexpr const char* kTitle = "Writing the trace";

}  // namespace

int StartTracing(LogFile& trace, const std::string& path, std::span<const std::string> files,
                 const Operation& operation) {
  if (path.empty()) return 0;
  // One would be written into the other, or replace it. A file to be made has only its name yet.
  const bool taken = std::any_of(files.begin(), files.end(), [&](const std::string& file) {
    return file == path || SameFile(file, path);
  });
  const std::string problem =
      taken ? path + " is a file of the command itself" : OpenLogFile(trace, path);
  if (!problem.empty()) {
    ShowMessage(operation, problem, kTitle);
    return -1;
  }
  StartTraceLog({.context = &trace, .write = WriteLogLine, .settle = SettleLog});
  return 0;
}

void StopTracing(LogFile& trace, const Operation& operation) {
  EndTraceLog();
  // Only now: a transfer is worth more than its trace, and one message is enough.
  const std::string problem = CloseLogFile(trace);
  if (!problem.empty()) ShowMessage(operation, problem, kTitle);
}

}  // namespace skyhaul
