#include "platform/posix/clock.h"

#include <cerrno>
#include <ctime>

namespace skyhaul {

namespace {

constexpr long kNanosecondsPerMillisecond = 1'000'000;
constexpr long kNanosecondsPerSecond = 1'000'000'000;

timespec Now(clockid_t clock) {
  timespec now{};
  clock_gettime(clock, &now);
  return now;
}

uint64_t Tick(void*) {
  return MonotonicMilliseconds();
}

// Sleeps until a moment instead of for a time, so that signals cannot stretch or cut the wait. The
// monotonic clock stands still while the computer sleeps, and so do all time-outs.
void Wait(void*, uint32_t ms) {
  timespec end = Now(CLOCK_MONOTONIC);
  end.tv_sec += static_cast<time_t>(ms / 1000);
  end.tv_nsec += static_cast<long>(ms % 1000) * kNanosecondsPerMillisecond;
  if (end.tv_nsec >= kNanosecondsPerSecond) {
    end.tv_nsec -= kNanosecondsPerSecond;
    ++end.tv_sec;
  }
  while (clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &end, nullptr) == EINTR) {
  }
}

int64_t UnixTime(void*) {
  return Now(CLOCK_REALTIME).tv_sec;
}

}  // namespace

uint64_t MonotonicMilliseconds() {
  const timespec now = Now(CLOCK_MONOTONIC);
  return static_cast<uint64_t>(now.tv_sec) * 1000 +
         static_cast<uint64_t>(now.tv_nsec / kNanosecondsPerMillisecond);
}

ClockFunctions PosixClock() {
  return {.tick_ms = Tick, .wait = Wait, .unix_time_s = UnixTime};
}

}  // namespace skyhaul
