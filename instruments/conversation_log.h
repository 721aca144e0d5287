#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace skyhaul {

enum class Speaker { kHost, kInstrument };

// The conversation on a wire as lines that a person can read:
//
//      12.345 host        24 50 42 52 54 4C 2C 2A 37 34 0D 0A  |$PBRTL,*74..|
//
// seconds since the start, who sent it, the bytes in hexadecimal and as text. A line holds what one
// side sent without a pause, up to a line end or 100 bytes, and tells when its first byte came.
struct ConversationLog {
  // Takes each finished line, its line end included.
  void (*write)(void* context, std::string_view line) = nullptr;
  void* context = nullptr;

  // The line being collected.
  Speaker speaker = Speaker::kHost;
  std::string bytes = {};
  uint64_t first_ns = 0;
  uint64_t last_ns = 0;
};

// Times are those since the start of the conversation.
void LogBytes(ConversationLog& log, Speaker speaker, std::string_view bytes, uint64_t now_ns);

// A remark of the instrument's own between the lines.
void LogRemark(ConversationLog& log, std::string_view text, uint64_t now_ns);

// Finishes the line being collected when it is older than a pause (5 ms), or in any case with
// now_ns = kNever_ns.
void FlushLog(ConversationLog& log, uint64_t now_ns);

}  // namespace skyhaul
