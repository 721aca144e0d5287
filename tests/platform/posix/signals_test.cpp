#include <gtest/gtest.h>
#include <signal.h>
#include <sys/time.h>

#include <atomic>
#include <cstdlib>
#include <thread>

#include "platform/platform.h"
#include "platform/terminal.h"

namespace skyhaul {
namespace {

std::atomic<int> alarms = 0;

void CountAlarm(int) {
  ++alarms;
}

// Across the end of a second, so that the nanoseconds have to carry.
TEST(Clock, SignalsDoNotCutAWaitShort) {
  const ClockFunctions& clock = NativePlatform().clock;
  signal(SIGALRM, CountAlarm);
  const itimerval every_20_ms = {{0, 20000}, {0, 20000}};
  ASSERT_EQ(setitimer(ITIMER_REAL, &every_20_ms, nullptr), 0);
  for (int i = 0; i < 4; ++i) {
    const uint64_t before_ms = clock.tick_ms(nullptr);
    clock.wait(nullptr, 270);
    EXPECT_GE(clock.tick_ms(nullptr) - before_ms, 269U);
  }
  const itimerval off = {};
  setitimer(ITIMER_REAL, &off, nullptr);
  signal(SIGALRM, SIG_DFL);
  EXPECT_GT(alarms, 0) << "a sanitizer may hold signals back, but not all of them";
}

TEST(Thread, LeavesSignalsToItsCaller) {
  const ThreadFunctions& threads = NativePlatform().thread;
  ThreadHandle handle = 0;
  sigset_t masks[2];
  const auto take_mask = [](void* mask) {
    pthread_sigmask(SIG_SETMASK, nullptr, static_cast<sigset_t*>(mask));
  };
  ASSERT_EQ(threads.start(nullptr, take_mask, &masks[1], &handle), 0);
  threads.join(nullptr, handle);
  take_mask(&masks[0]);
  for (const int blocked : {0, 1}) {
    EXPECT_EQ(sigismember(&masks[blocked], SIGINT), blocked);
    EXPECT_EQ(sigismember(&masks[blocked], SIGTERM), blocked);
  }
}

struct Call {
  std::thread::id thread;
  std::atomic<int> calls = 0;
};

void NoteCall(void* context) {
  auto* call = static_cast<Call*>(context);
  call->thread = std::this_thread::get_id();
  ++call->calls;
  call->calls.notify_all();
}

// Ends the program with status 0 when the routine was called once for one interrupt.
[[noreturn]] void InterruptOnce(bool before_the_routine) {
  Call call;
  std::atomic<bool> first = false;
  CountInterrupts(&first);
  OnInterrupt(NoteCall, &call);
  OnInterrupt(nullptr, nullptr);
  if (before_the_routine) raise(SIGINT);
  OnInterrupt(NoteCall, &call);
  if (!before_the_routine) raise(SIGTERM);
  call.calls.wait(0);
  OnInterrupt(nullptr, nullptr);
  const bool beside = before_the_routine || call.thread != std::this_thread::get_id();
  std::exit(call.calls == 1 && beside && first && Interrupts() == 1 ? 0 : 1);
}

// The signal handler itself runs on the thread that raises.
TEST(Interrupt, CallsTheRoutineOnceOutsideTheHandler) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  for (const bool before_the_routine : {false, true}) {
    EXPECT_EXIT(InterruptOnce(before_the_routine), testing::ExitedWithCode(0), "");
  }
}

}  // namespace
}  // namespace skyhaul
