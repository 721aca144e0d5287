#pragma once

#include <cstdint>
#include <string_view>

#include "transport/conversation_log.h"

namespace skyhaul {

// The whole conversation of every job, written while it happens; transport/trace.h keeps the last
// job's in memory, up to its limit. There is one in the process; every function may be called from
// any thread, and does nothing unless it was started.

// Where the lines go. No function of it may fail visibly: a log never harms a transfer.
struct TraceLogTarget {
  void* context = nullptr;
  // Takes each finished line (see ConversationLog), its line end included, and hands it to the
  // system at once, so that the program's own death loses nothing.
  void (*write)(void* context, std::string_view line) = nullptr;
  // Makes sure that what was written survives the computer's death. Called within a second of each
  // line as long as a job runs, and at most once a second, because a slow disk takes its time.
  void (*settle)(void* context) = nullptr;
};

// The target's context must live until the end.
void StartTraceLog(const TraceLogTarget& target);
void EndTraceLog();

// A job begins: times count from here on, and its first line is a remark that names it.
void LogTracedJob(std::string_view what, uint64_t tick_ms);

// Bytes of one side.
void LogTraced(Speaker speaker, std::string_view bytes, uint64_t tick_ms);

// Says that time has passed, so that a line which its sender does not go on with is written. A link
// says so every 50 ms.
void LogTracedTime(uint64_t tick_ms);

void LogTracedRemark(std::string_view text, uint64_t tick_ms);

}  // namespace skyhaul
