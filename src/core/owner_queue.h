#pragma once

#include <condition_variable>
#include <deque>
#include <mutex>

namespace skyhaul {

// A routine to be run later, with its argument. Whoever hands it over keeps the argument alive
// until the routine has run.
struct OwnerRoutine {
  void (*run)(void* argument) = nullptr;
  void* argument = nullptr;
};

// Routines that other threads hand to the thread that owns the document, where no toolkit's event
// queue does this. A face without one implements Shell::run_on_owner with PostToOwner() and calls
// RunNextRoutine() while a job runs. The queue must outlive all callers of PostToOwner().
struct OwnerQueue {
  std::mutex mutex;
  std::condition_variable posted;
  std::deque<OwnerRoutine> routines;  // in the order in which they were posted
};

// Hands a routine over and returns at once. For any thread, also for the owner and from within a
// routine, but not for a signal handler (see OnInterrupt in platform/terminal.h).
void PostToOwner(OwnerQueue& queue, void (*run)(void* argument), void* argument);

// Runs the oldest routine on the calling thread, which is the owner; waits as long as it takes
// until there is one. The routine may post further ones; they run in later calls.
void RunNextRoutine(OwnerQueue& queue);

}  // namespace skyhaul
