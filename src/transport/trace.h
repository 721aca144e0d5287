#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace skyhaul {

inline constexpr size_t kTraceCapacity = 200000;

// The communication trace: what went over the wire in the last job, for a pilot to send in when an
// instrument misbehaves. One for the whole process; every function may be called from any thread.
// Appending stops silently when the capacity is reached.

void ClearTrace();
void TraceBytes(const uint8_t* bytes, size_t count);
void TraceText(std::string_view text);
// Each byte as a blank and two upper-case hexadecimal digits, a line break after every 16 and at
// the end.
void TraceHexDump(const uint8_t* bytes, size_t count);
std::string TraceContents();

}  // namespace skyhaul
