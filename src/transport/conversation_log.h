#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace skyhaul {

enum class Speaker { kHost, kInstrument };

// XON and XOFF: they stand anywhere in a conversation and are part of no sentence.
inline constexpr std::string_view kFlowControlBytes = "\x11\x13";

// The conversation on a wire as lines that a person can read:
//
//      12.345 host        24 50 42 52 54 4C 2C 2A 37 34 0D 0A  |$PBRTL,*74..|
//
// seconds since the start, who sent it, the bytes in hexadecimal and as text. A line holds what one
// side sent without a pause, up to a line end or 100 bytes, and tells when its first byte came. A
// line of "remark" and any text stands between them.
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

// Finishes the line being collected, however new it is, when FlushLog() is told that this is now.
inline constexpr uint64_t kEndOfLog_ns = UINT64_MAX;

// Times are those since the start of the conversation.
void LogBytes(ConversationLog& log, Speaker speaker, std::string_view bytes, uint64_t now_ns);

// A remark between the lines: one line of text.
void LogRemark(ConversationLog& log, std::string_view text, uint64_t now_ns);

// Finishes the line being collected when it is older than a pause (5 ms).
void FlushLog(ConversationLog& log, uint64_t now_ns);

// What one line of such a file says.
struct SpokenLine {
  uint64_t time_ms = 0;  // begins anew with each job of a run
  Speaker speaker = Speaker::kHost;
  std::string bytes;
  size_t line_number = 0;  // in the file, from 1

  friend bool operator==(const SpokenLine&, const SpokenLine&) = default;
};

// The line of a file, its line end included.
std::string FormatSpokenLine(const SpokenLine& line);

// True for a line of a remark or without any text.
bool IsRemark(std::string_view line);

// Reads a file of such lines; remarks and empty lines are skipped. A line that cannot be read is
// left out where a computer that lost its power leaves one: at the end, without a line end, and
// directly before the first remark of a job. Returns the number of lines read, or -1 when another
// line cannot be read or there are none; then the message says so, and lines is empty.
int ReadConversation(std::string_view text, std::vector<SpokenLine>& lines, std::string& message);

}  // namespace skyhaul
