#pragma once

#include <cstdio>
#include <string>

#include "transport/conversation_log.h"

namespace skyhaul {

// The file of --log: each line is handed to the system at once.
struct LogFile {
  LogFile() = default;
  ~LogFile() {
    if (file != nullptr) (void)std::fclose(file);
  }
  LogFile(const LogFile&) = delete;
  LogFile& operator=(const LogFile&) = delete;

  std::FILE* file = nullptr;
  ConversationLog log;
};

// Makes the file. Returns the log to write to; null without a path, or with a message in problem.
inline ConversationLog* OpenLog(LogFile& opened, const std::string& path, std::string& problem) {
  if (path.empty()) return nullptr;
  opened.file = std::fopen(path.c_str(), "wb");
  if (opened.file == nullptr) {
    problem = "Could not write " + path;
    return nullptr;
  }
  opened.log.context = opened.file;
  opened.log.write = [](void* context, std::string_view line) {
    auto* file = static_cast<std::FILE*>(context);
    (void)std::fwrite(line.data(), 1, line.size(), file);
    (void)std::fflush(file);
  };
  return &opened.log;
}

}  // namespace skyhaul
