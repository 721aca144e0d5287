#include "platform/interrupt_routine.h"

#include <mutex>
#include <utility>

#include "platform/terminal.h"

namespace skyhaul {

namespace {

struct InterruptRoutine {
  void (*run)(void* context) = nullptr;
  void* context = nullptr;
};

std::mutex mutex;  // also held while the routine runs, so that replacing it waits for its end
InterruptRoutine waiting;

void CallLocked() {
  const InterruptRoutine call = std::exchange(waiting, {});
  if (call.run != nullptr) call.run(call.context);
}

}  // namespace

void CallInterruptRoutine() {
  const std::scoped_lock lock(mutex);
  CallLocked();
}

// The interrupt is counted before CallInterruptRoutine() locks: either that call finds the new
// routine, or the count is seen here.
void OnInterrupt(void (*routine)(void* context), void* context) {
  const std::scoped_lock lock(mutex);
  waiting = {.run = routine, .context = context};
  if (Interrupts() > 0) CallLocked();
}

}  // namespace skyhaul
