#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace skyhaul {

inline constexpr size_t kTraceCapacity = 200000;

// The communication trace: the bytes of the last job in both directions, for a pilot to send in
// when an instrument misbehaves. There is one in the process; every function may be called from any
// thread. What is beyond the capacity is dropped without a message.

void ClearTrace();
void TraceBytes(const uint8_t* bytes, size_t count);
void TraceText(std::string_view text);
// Each byte as a blank and two upper-case hexadecimal digits, a line break after every 16 and at
// the end.
void TraceHexDump(const uint8_t* bytes, size_t count);
std::string TraceContents();

}  // namespace skyhaul
