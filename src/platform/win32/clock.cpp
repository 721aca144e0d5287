#include "platform/win32/clock.h"

#include "platform/win32/handle.h"
#include "platform/win32/windows_api.h"

namespace skyhaul {

namespace {

constexpr uint64_t kUnixEpoch = 116'444'736'000'000'000;  // in the system's 100 ns since 1601
constexpr uint64_t kTicksPerSecond = 10'000'000;

uint64_t Tick(void*) {
  return MonotonicMilliseconds();
}

// Waits for an event that nobody sets. The tick moves in steps of up to 16 ms, so that a wait may
// end before the tick shows the whole time; waiting on until it does keeps callers right that count
// ticks.
void Wait(void*, uint32_t ms) {
  static const OwnedHandle never(CreateEventW(nullptr, TRUE, FALSE, nullptr));
  const uint64_t end_ms = MonotonicMilliseconds() + ms;
  for (uint64_t now_ms = end_ms - ms; now_ms < end_ms; now_ms = MonotonicMilliseconds()) {
    const auto left_ms = static_cast<DWORD>(end_ms - now_ms);
    if (WaitForSingleObject(never.handle, left_ms) != WAIT_TIMEOUT) Sleep(left_ms);
  }
}

int64_t UnixTime(void*) {
  FILETIME now;
  GetSystemTimeAsFileTime(&now);
  const uint64_t ticks = uint64_t{now.dwHighDateTime} << 32 | now.dwLowDateTime;
  return static_cast<int64_t>((ticks - kUnixEpoch) / kTicksPerSecond);
}

}  // namespace

uint64_t MonotonicMilliseconds() {
  return GetTickCount64();
}

ClockFunctions Win32Clock() {
  return {.tick_ms = Tick, .wait = Wait, .unix_time_s = UnixTime};
}

}  // namespace skyhaul
