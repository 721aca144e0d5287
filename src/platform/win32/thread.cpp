#include "platform/win32/thread.h"

#include <process.h>
#include <memory>

#include "platform/win32/handle.h"
#include "platform/win32/windows_api.h"

namespace skyhaul {

namespace {

struct ThreadStart {
  void (*run)(void* argument);
  void* argument;
};

unsigned __stdcall RunThread(void* start) {
  const std::unique_ptr<ThreadStart> owned(static_cast<ThreadStart*>(start));
  owned->run(owned->argument);
  return 0;
}

// Starts suspended, so that the caller has the handle before the thread runs its first instruction.
// _beginthreadex() and not CreateThread(): the C library keeps data for each thread.
int Start(void*, void (*run)(void* argument), void* argument, ThreadHandle* thread) {
  auto start = std::make_unique<ThreadStart>(ThreadStart{.run = run, .argument = argument});
  const uintptr_t created =
      _beginthreadex(nullptr, 0, RunThread, start.get(), CREATE_SUSPENDED, nullptr);
  if (created == 0) return -1;
  *thread = created;
  static_cast<void>(start.release());  // RunThread() owns it now
  ResumeThread(reinterpret_cast<HANDLE>(created));
  return 0;
}

void Join(void*, ThreadHandle thread) {
  const OwnedHandle owned(reinterpret_cast<HANDLE>(thread));
  WaitForSingleObject(owned.handle, INFINITE);
}

}  // namespace

ThreadFunctions Win32Thread() {
  return {.start = Start, .join = Join};
}

}  // namespace skyhaul
