#include <gtest/gtest.h>

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

}  // namespace
}  // namespace skyhaul
