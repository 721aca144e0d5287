#include <gtest/gtest.h>
#include <semaphore.h>
#include <signal.h>
#include <sys/time.h>

#include <array>
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
  struct sigaction count {};
  struct sigaction previous {};
  count.sa_handler = CountAlarm;
  ASSERT_EQ(sigaction(SIGALRM, &count, &previous), 0);
  const itimerval every_20_ms = {{0, 20000}, {0, 20000}};
  ASSERT_EQ(setitimer(ITIMER_REAL, &every_20_ms, nullptr), 0);
  const uint64_t start_ms = clock.tick_ms(nullptr);
  for (int i = 0; i < 4; ++i) {
    const uint64_t before_ms = clock.tick_ms(nullptr);
    clock.wait(nullptr, 270);
    EXPECT_GE(clock.tick_ms(nullptr) - before_ms, 269U);
  }
  const itimerval off = {};
  setitimer(ITIMER_REAL, &off, nullptr);
  sigaction(SIGALRM, &previous, nullptr);
  EXPECT_GE(clock.tick_ms(nullptr) - start_ms, 1079U);
  EXPECT_GT(alarms, 0) << "a sanitizer may hold signals back, but not all of them";
}

struct Seen {
  bool int_blocked = false;
  bool term_blocked = false;
};

void LookAround(void* argument) {
  auto* seen = static_cast<Seen*>(argument);
  sigset_t mask;
  pthread_sigmask(SIG_SETMASK, nullptr, &mask);
  seen->int_blocked = sigismember(&mask, SIGINT) == 1;
  seen->term_blocked = sigismember(&mask, SIGTERM) == 1;
}

TEST(Thread, LeavesSignalsToItsCaller) {
  const ThreadFunctions& threads = NativePlatform().thread;
  std::array<Seen, 3> seen;
  std::array<ThreadHandle, 3> handles{};
  for (size_t i = 0; i < seen.size(); ++i) {
    ASSERT_EQ(threads.start(nullptr, LookAround, &seen[i], &handles[i]), 0);
  }
  for (const ThreadHandle handle : handles) threads.join(nullptr, handle);
  for (const Seen& s : seen) {
    EXPECT_TRUE(s.int_blocked);
    EXPECT_TRUE(s.term_blocked);
  }
  sigset_t mask;
  pthread_sigmask(SIG_SETMASK, nullptr, &mask);
  EXPECT_EQ(sigismember(&mask, SIGINT), 0);
  EXPECT_EQ(sigismember(&mask, SIGTERM), 0);
}

struct Call {
  sem_t done;
  std::thread::id thread;
  int calls = 0;
};

void NoteCall(void* context) {
  auto* call = static_cast<Call*>(context);
  call->thread = std::this_thread::get_id();
  ++call->calls;
  sem_post(&call->done);
}

// Ends the program with status 0 when the routine was called once for one interrupt.
[[noreturn]] void InterruptOnce(bool before_the_routine) {
  Call call;
  Call replaced;
  sem_init(&call.done, 0, 0);
  std::atomic<bool> first = false;
  CountInterrupts(&first);
  OnInterrupt(NoteCall, &replaced);
  OnInterrupt(nullptr, nullptr);
  if (before_the_routine) raise(SIGINT);
  OnInterrupt(NoteCall, &call);
  if (!before_the_routine) raise(SIGTERM);
  sem_wait(&call.done);
  OnInterrupt(nullptr, nullptr);
  const bool beside = before_the_routine || call.thread != std::this_thread::get_id();
  std::exit(call.calls == 1 && beside && replaced.calls == 0 && first && Interrupts() == 1 ? 0 : 1);
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
