#include <gtest/gtest.h>

#include <array>
#include <ctime>
#include <thread>

#include "platform/platform.h"

namespace skyhaul {
namespace {

// However coarse the system's tick is, a caller that counts ticks finds the whole wait in them.
TEST(Clock, AWaitIsNeverShorterThanItsTicks) {
  const ClockFunctions& clock = NativePlatform().clock;
  for (const uint32_t ms : {0U, 1U, 7U, 20U, 33U}) {
    const uint64_t before_ms = clock.tick_ms(nullptr);
    clock.wait(nullptr, ms);
    EXPECT_GE(clock.tick_ms(nullptr) - before_ms + 1, ms);
  }
}

TEST(Clock, UnixTimeIsTheSystems) {
  const int64_t before_s = time(nullptr);
  const int64_t now_s = NativePlatform().clock.unix_time_s(nullptr);
  EXPECT_GE(now_s, before_s - 1);
  EXPECT_LE(now_s, time(nullptr) + 1);
}

TEST(Thread, RunsOnceBesideTheCaller) {
  struct Seen {
    std::thread::id thread;
    int runs = 0;
  };
  const auto look_around = [](void* argument) {
    auto* seen = static_cast<Seen*>(argument);
    seen->thread = std::this_thread::get_id();
    ++seen->runs;
  };
  const ThreadFunctions& threads = NativePlatform().thread;
  std::array<Seen, 3> seen;
  std::array<ThreadHandle, 3> handles{};
  for (size_t i = 0; i < seen.size(); ++i) {
    ASSERT_EQ(threads.start(nullptr, look_around, &seen[i], &handles[i]), 0);
  }
  for (const ThreadHandle handle : handles) threads.join(nullptr, handle);
  for (const Seen& s : seen) {
    EXPECT_EQ(s.runs, 1);
    EXPECT_NE(s.thread, std::this_thread::get_id());
  }
}

}  // namespace
}  // namespace skyhaul
