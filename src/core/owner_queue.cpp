#include "core/owner_queue.h"

namespace skyhaul {

// Notifies while it holds the mutex: the last routine may end the owner's wait and with it the
// queue, and a notification after the unlock would then touch a queue that is gone.
void PostToOwner(OwnerQueue& queue, void (*run)(void* argument), void* argument) {
  const std::scoped_lock lock(queue.mutex);
  queue.routines.push_back({.run = run, .argument = argument});
  queue.posted.notify_one();
}

void RunNextRoutine(OwnerQueue& queue) {
  std::unique_lock lock(queue.mutex);
  // The condition is asked again after each wake-up, because a wait may end without a notification.
  queue.posted.wait(lock, [&] { return !queue.routines.empty(); });
  const OwnerRoutine next = queue.routines.front();
  queue.routines.pop_front();
  // Unlocked, so that the routine may post and no other thread waits for its end.
  lock.unlock();
  next.run(next.argument);
}

}  // namespace skyhaul
