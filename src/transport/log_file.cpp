#include "transport/log_file.h"

#include "platform/file.h"

namespace skyhaul {

std::string OpenLogFile(LogFile& file, const std::string& path) {
  // Only what is a file on a disk already is the same as itself. It may end in the middle of a
  // line; if not, an empty line between two runs does no harm.
  const bool was_there = SameFile(path, path);
  const AppendOpening opening = OpenToAppend(path);
  if (opening.handle == kNoAppendHandle) return path + ": " + opening.reason;
  file = {.path = path, .handle = opening.handle, .new_line = was_there, .problem = {}};
  return {};
}

void WriteLogLine(void* context, std::string_view line) {
  auto& file = *static_cast<LogFile*>(context);
  if (file.new_line) file.problem = Append(file.handle, "\n");
  file.new_line = false;
  // Not tried again: what comes after a gap would look as if it had followed.
  if (file.problem.empty()) file.problem = Append(file.handle, line);
}

void SettleLog(void* context) {
  SettleAppended(static_cast<LogFile*>(context)->handle);
}

std::string CloseLogFile(LogFile& file) {
  if (file.handle == kNoAppendHandle) return {};
  CloseAppended(file.handle);
  file.handle = kNoAppendHandle;
  if (file.problem.empty()) return {};
  return file.path + " ends before the conversation does: " + file.problem;
}

}  // namespace skyhaul
