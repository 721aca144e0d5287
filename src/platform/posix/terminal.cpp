#include "platform/terminal.h"

#include <signal.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <cstring>

namespace skyhaul {

namespace {

constexpr int kInterruptedStatus = 130;  // 128 + SIGINT, as shells report it

std::atomic<int> interrupts = 0;
std::atomic<std::atomic<bool>*> first_interrupt = nullptr;
static_assert(std::atomic<int>::is_always_lock_free && std::atomic<bool>::is_always_lock_free &&
                  std::atomic<std::atomic<bool>*>::is_always_lock_free,
              "used in a signal handler");

void OnInterrupt(int /*signal*/) {
  if (interrupts.fetch_add(1) > 0) _exit(kInterruptedStatus);
  std::atomic<bool>* const first = first_interrupt;
  if (first != nullptr) *first = true;
}

}  // namespace

bool ErrorIsTerminal() {
  const char* term = std::getenv("TERM");
  return isatty(STDERR_FILENO) != 0 && (term == nullptr || std::strcmp(term, "dumb") != 0);
}

void SurviveBrokenPipes() {
  signal(SIGPIPE, SIG_IGN);
}

// The locale of a terminal here is the person's choice.
void WriteUtf8() {}

void CountInterrupts(std::atomic<bool>* first) {
  first_interrupt = first;
  struct sigaction action = {};
  action.sa_handler = OnInterrupt;
  action.sa_flags = SA_RESTART;
  sigemptyset(&action.sa_mask);
  sigaction(SIGINT, &action, nullptr);
  sigaction(SIGTERM, &action, nullptr);
}

int Interrupts() {
  return interrupts;
}

}  // namespace skyhaul
