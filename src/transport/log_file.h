#pragma once

#include <string>
#include <string_view>

#include "platform/append_file.h"

namespace skyhaul {

// A file that takes the lines of a conversation while it happens. It must stay where it is until
// CloseLogFile().
struct LogFile {
  std::string path;
  AppendHandle handle = kNoAppendHandle;
  bool new_line = false;  // one comes before the next line
  std::string problem;    // why it ends before the conversation does; empty: it does not
};

// Opens it to write behind what it holds, from a new line on. Returns what is wrong, empty when
// nothing is.
std::string OpenLogFile(LogFile& file, const std::string& path);

// For ConversationLog and TraceLogTarget; the context is the LogFile.
void WriteLogLine(void* context, std::string_view line);
void SettleLog(void* context);

// Closes it; does nothing when it is not open. Returns one line when it could not take the whole
// conversation, else nothing.
std::string CloseLogFile(LogFile& file);

}  // namespace skyhaul
