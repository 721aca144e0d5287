#include "platform/terminal.h"

#include <semaphore.h>
#include <signal.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <cstring>

#include "platform/interrupt_routine.h"
#include "platform/posix/thread.h"

namespace skyhaul {

namespace {

constexpr int kInterruptedStatus = 130;  // 128 + SIGINT, as shells report it, for SIGTERM too

std::atomic<int> interrupts = 0;
std::atomic<std::atomic<bool>*> first_interrupt = nullptr;
static_assert(std::atomic<int>::is_always_lock_free && std::atomic<bool>::is_always_lock_free &&
                  std::atomic<std::atomic<bool>*>::is_always_lock_free,
              "used in a signal handler");

// Posted by the signal handler, since almost nothing else may be called from one.
sem_t interrupted;

void HandleSignal(int /*signal*/) {
  // _exit() and not exit(): destructors may not run in a signal handler.
  if (interrupts.fetch_add(1) > 0) _exit(kInterruptedStatus);
  std::atomic<bool>* const first = first_interrupt;
  if (first != nullptr) *first = true;
  sem_post(&interrupted);
}

void PassInterruptsOn(void*) {
  while (true) {
    if (sem_wait(&interrupted) == 0) CallInterruptRoutine();  // else a debugger or SIGCONT woke it
  }
}

// The thread lives as long as the program, so nobody joins it. Without it (the system has no thread
// to give) the first interrupt is only counted, and the second still ends the program.
void StartPassingInterruptsOn() {
  static bool started = false;
  if (started) return;
  started = true;
  sem_init(&interrupted, 0, 0);
  ThreadHandle thread = 0;
  static_cast<void>(PosixThread().start(nullptr, PassInterruptsOn, nullptr, &thread));
}

}  // namespace

bool ErrorIsTerminal() {
  const char* term = std::getenv("TERM");
  return isatty(STDERR_FILENO) != 0 && (term == nullptr || std::strcmp(term, "dumb") != 0);
}

void SurviveFailedWrites() {
  signal(SIGPIPE, SIG_IGN);
  signal(SIGXFSZ, SIG_IGN);
}

// The locale of a terminal here is the person's choice.
void WriteUtf8() {}

void CountInterrupts(std::atomic<bool>* first) {
  first_interrupt = first;
  StartPassingInterruptsOn();
  struct sigaction action = {};
  action.sa_handler = HandleSignal;
  action.sa_flags = SA_RESTART;  // a counted interrupt is no error of whatever is being read
  sigemptyset(&action.sa_mask);
  sigaction(SIGINT, &action, nullptr);
  sigaction(SIGTERM, &action, nullptr);
}

int Interrupts() {
  return interrupts;
}

}  // namespace skyhaul
