#include "platform/posix/thread.h"

#include <pthread.h>
#include <signal.h>

#include <memory>

namespace skyhaul {

namespace {

static_assert(sizeof(pthread_t) == sizeof(ThreadHandle));

struct ThreadStart {
  void (*run)(void* argument);
  void* argument;
};

void* RunThread(void* start) {
  const std::unique_ptr<ThreadStart> owned(static_cast<ThreadStart*>(start));
  owned->run(owned->argument);
  return nullptr;
}

// The new thread inherits the mask of the one that creates it, so the signals are blocked around
// the creation: blocking them from inside would leave a moment in which the thread could get one.
int Start(void*, void (*run)(void* argument), void* argument, ThreadHandle* thread) {
  sigset_t blocked;
  sigset_t previous;
  sigemptyset(&blocked);
  sigaddset(&blocked, SIGINT);
  sigaddset(&blocked, SIGTERM);
  pthread_sigmask(SIG_BLOCK, &blocked, &previous);
  auto start = std::make_unique<ThreadStart>(ThreadStart{.run = run, .argument = argument});
  pthread_t created{};
  const int error = pthread_create(&created, nullptr, RunThread, start.get());
  pthread_sigmask(SIG_SETMASK, &previous, nullptr);
  if (error != 0) return -1;
  static_cast<void>(start.release());  // RunThread() owns it now
  *thread = static_cast<ThreadHandle>(created);
  return 0;
}

void Join(void*, ThreadHandle thread) {
  pthread_join(static_cast<pthread_t>(thread), nullptr);
}

}  // namespace

ThreadFunctions PosixThread() {
  return {.start = Start, .join = Join};
}

}  // namespace skyhaul
