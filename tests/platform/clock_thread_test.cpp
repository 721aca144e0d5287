#include <gtest/gtest.h>

#include <ctime>
#include <thread>
#include <vector>

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
  static std::vector<std::thread::id> runs;
  const auto look_around = [](void*) { runs.push_back(std::this_thread::get_id()); };
  const ThreadFunctions& threads = NativePlatform().thread;
  ThreadHandle handle = 0;
  ASSERT_EQ(threads.start(nullptr, look_around, nullptr, &handle), 0);
  threads.join(nullptr, handle);
  ASSERT_EQ(runs.size(), 1U);
  EXPECT_NE(runs[0], std::this_thread::get_id());
}

}  // namespace
}  // namespace skyhaul
