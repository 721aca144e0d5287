#include "transport/trace_log.h"

#include <mutex>

namespace skyhaul {

namespace {

constexpr uint64_t kMillisecond_ns = 1'000'000;
constexpr uint64_t kSettleEvery_ms = 1000;

struct TraceLog {
  std::mutex mutex;
  TraceLogTarget target;  // without a write function: not started
  ConversationLog lines;
  uint64_t start_ms = 0;
  uint64_t settled_ms = 0;  // when the target last settled, as a tick
  bool unsettled = false;   // lines were written since
};

TraceLog& TheLog() {
  static TraceLog log;
  return log;
}

void WriteLine(void* context, std::string_view line) {
  auto& log = *static_cast<TraceLog*>(context);
  log.target.write(log.target.context, line);
  log.unsettled = true;
}

void Settle(TraceLog& log) {
  if (log.unsettled) log.target.settle(log.target.context);
  log.unsettled = false;
}

uint64_t SinceStart_ns(const TraceLog& log, uint64_t tick_ms) {
  return (tick_ms - log.start_ms) * kMillisecond_ns;
}

// Runs a function over the log's lines, then settles when it is time. Nothing when not started.
template <typename Function>
void WithLines(uint64_t tick_ms, Function function) {
  TraceLog& log = TheLog();
  const std::scoped_lock lock(log.mutex);
  if (log.target.write == nullptr) return;
  // Conversations outside a job, in tests, may be on another clock that has just begun.
  if (tick_ms < log.start_ms) log.start_ms = log.settled_ms = tick_ms;
  function(log, SinceStart_ns(log, tick_ms));
  if (tick_ms - log.settled_ms < kSettleEvery_ms) return;
  Settle(log);
  log.settled_ms = tick_ms;
}

}  // namespace

void StartTraceLog(const TraceLogTarget& target) {
  TraceLog& log = TheLog();
  const std::scoped_lock lock(log.mutex);
  log.target = target;
  log.lines = {.write = WriteLine, .context = &log};
  log.start_ms = log.settled_ms = 0;
  log.unsettled = false;
}

void EndTraceLog() {
  TraceLog& log = TheLog();
  const std::scoped_lock lock(log.mutex);
  if (log.target.write == nullptr) return;
  FlushLog(log.lines, kEndOfLog_ns);
  Settle(log);
  log.target = {};
}

void LogTracedJob(std::string_view what, uint64_t tick_ms) {
  WithLines(tick_ms, [&](TraceLog& log, uint64_t) {
    FlushLog(log.lines, kEndOfLog_ns);
    log.start_ms = tick_ms;
    // The line of the job before may be later on its own clock than anything of this one.
    log.lines.last_ns = 0;
    LogRemark(log.lines, what, 0);
  });
}

void LogTraced(Speaker speaker, std::string_view bytes, uint64_t tick_ms) {
  WithLines(tick_ms,
            [&](TraceLog& log, uint64_t now_ns) { LogBytes(log.lines, speaker, bytes, now_ns); });
}

void LogTracedTime(uint64_t tick_ms) {
  WithLines(tick_ms, [](TraceLog& log, uint64_t now_ns) { FlushLog(log.lines, now_ns); });
}

void LogTracedRemark(std::string_view text, uint64_t tick_ms) {
  WithLines(tick_ms, [&](TraceLog& log, uint64_t now_ns) { LogRemark(log.lines, text, now_ns); });
}

}  // namespace skyhaul
