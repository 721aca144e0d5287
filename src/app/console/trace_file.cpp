#include "app/console/trace_file.h"

#include <string_view>

#include "transport/trace_log.h"

namespace skyhaul {

namespace {

constexpr const char* kTitle = "Writing the trace";

void WriteLine(void* context, std::string_view line) {
  auto& file = *static_cast<TraceFile*>(context);
  // Not tried again: what comes after a gap would look as if it had followed.
  if (file.problem.empty()) file.problem = Append(file.handle, line);
}

void Settle(void* context) {
  SettleAppended(static_cast<TraceFile*>(context)->handle);
}

}  // namespace

int StartTracing(TraceFile& file, const std::string& path, const Operation& operation) {
  if (path.empty()) return 0;
  const AppendOpening opening = OpenToAppend(path);
  if (opening.handle == kNoAppendHandle) {
    ShowMessage(operation, path + ": " + opening.reason, kTitle);
    return -1;
  }
  file = {.path = path, .handle = opening.handle, .problem = {}};
  StartTraceLog({.context = &file, .write = WriteLine, .settle = Settle});
  return 0;
}

void StopTracing(TraceFile& file, const Operation& operation) {
  if (file.handle == kNoAppendHandle) return;
  EndTraceLog();
  CloseAppended(file.handle);
  file.handle = kNoAppendHandle;
  // Only now: a transfer is worth more than its trace, and one message is enough.
  if (file.problem.empty()) return;
  ShowMessage(operation, file.path + " ends before the conversation does: " + file.problem, kTitle);
}

}  // namespace skyhaul
