#include "platform/terminal.h"

#include <atomic>
#include <cstdlib>

#include "platform/interrupt_routine.h"
#include "platform/win32/windows_api.h"

namespace skyhaul {

namespace {

constexpr UINT kInterruptedStatus = 130;  // as on other systems
constexpr DWORD kTimeToStop_ms = 4500;    // the system allows 5 s after its event

std::atomic<int> interrupts = 0;
std::atomic<std::atomic<bool>*> first_interrupt = nullptr;
std::atomic<UINT> console_code_page = 0;  // what the console had before; 0: it was not changed

void GiveCodePageBack() {
  if (console_code_page != 0) SetConsoleOutputCP(console_code_page);
}

// Runs on a thread that the system makes for it.
BOOL WINAPI HandleConsoleEvent(DWORD event) {
  if (interrupts.fetch_add(1) > 0) {
    GiveCodePageBack();
    TerminateProcess(GetCurrentProcess(), kInterruptedStatus);
  }
  std::atomic<bool>* const first = first_interrupt;
  if (first != nullptr) *first = true;
  CallInterruptRoutine();
  // When the console closes or the person logs off, the system ends the program as soon as this
  // returns, so the program gets the rest of its time to stop by itself.
  if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) Sleep(kTimeToStop_ms);
  return TRUE;
}

}  // namespace

bool ErrorIsTerminal() {
  DWORD mode = 0;
  return GetConsoleMode(GetStdHandle(STD_ERROR_HANDLE), &mode) != 0;
}

// Writing to a pipe that nobody reads is never more than an error here.
void SurviveFailedWrites() {}

void WriteUtf8() {
  // 0: there is no console, and pipes and files get UTF-8 as it is.
  const UINT before = GetConsoleOutputCP();
  if (before == 0 || before == CP_UTF8 || SetConsoleOutputCP(CP_UTF8) == 0) return;
  console_code_page = before;
  static_cast<void>(std::atexit(GiveCodePageBack));
}

void CountInterrupts(std::atomic<bool>* first) {
  first_interrupt = first;
  SetConsoleCtrlHandler(HandleConsoleEvent, TRUE);
}

int Interrupts() {
  return interrupts;
}

}  // namespace skyhaul
