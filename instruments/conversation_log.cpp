#include "instruments/conversation_log.h"

#include <cstdio>

namespace skyhaul {

namespace {

constexpr uint64_t kPause_ns = 5'000'000;
constexpr size_t kLongestLine = 100;

std::string LineStart(uint64_t time_ns, const char* who) {
  char start[48];
  (void)std::snprintf(start, sizeof start, "%8.3f %-10s ", static_cast<double>(time_ns) / 1e9, who);
  return start;
}

void Finish(ConversationLog& log) {
  if (log.bytes.empty()) return;
  std::string line = LineStart(log.first_ns, log.speaker == Speaker::kHost ? "host" : "instrument");
  std::string text;
  for (const char c : log.bytes) {
    char hex[8];
    (void)std::snprintf(hex, sizeof hex, " %02X", static_cast<unsigned>(static_cast<uint8_t>(c)));
    line += hex;
    text += c >= ' ' && c <= '~' ? c : '.';
  }
  log.write(log.context, line + "  |" + text + "|\n");
  log.bytes.clear();
}

}  // namespace

void LogBytes(ConversationLog& log, Speaker speaker, std::string_view bytes, uint64_t now_ns) {
  FlushLog(log, now_ns);
  if (speaker != log.speaker) Finish(log);
  log.speaker = speaker;
  for (const char c : bytes) {
    if (log.bytes.empty()) log.first_ns = now_ns;
    log.bytes += c;
    log.last_ns = now_ns;
    // A flight has lines of its own, so that a long answer reads like the file.
    if (c == '\n' || log.bytes.size() == kLongestLine) Finish(log);
  }
}

void LogRemark(ConversationLog& log, std::string_view text, uint64_t now_ns) {
  Finish(log);
  log.write(log.context, LineStart(now_ns, "remark") + " " + std::string(text) + "\n");
}

void FlushLog(ConversationLog& log, uint64_t now_ns) {
  if (now_ns > log.last_ns + kPause_ns) Finish(log);
}

}  // namespace skyhaul
