#pragma once

#include <atomic>
#include <string>

#include "instruments/instrument.h"
#include "transport/conversation_log.h"

namespace skyhaul {

struct TerminalOptions {
  std::string link_path = {};      // a symbolic link to the terminal to be kept; empty: none
  ConversationLog* log = nullptr;  // null: none
  const std::atomic<bool>* stop = nullptr;  // looked at every 20 ms at least

  // Called when a program can open the terminal of that name: at the start, and again when the
  // terminal had to be replaced because a program died while it had it for itself.
  void (*on_ready)(void* context, const std::string& terminal_path) = nullptr;
  void* context = nullptr;
};

// A flag that becomes true when the process is asked to end: interrupted, terminated or hung up.
// From the first call on these no longer end it by themselves.
const std::atomic<bool>& StopOnSignals();

// Puts the instrument behind a pseudo-terminal, in real time, until options.stop is true. Bytes
// leave no earlier than the wire lets them and up to a millisecond later, as from a serial adapter.
// When the program that had the terminal open closes it, the instrument is told, and the terminal
// is as new for the next one. Link: an existing symbolic link is replaced, anything else of that
// name is left alone; it is removed at the end unless it points elsewhere by then. The instrument's
// times count from the call. Returns 0, or -1 with the problem in one sentence.
int RunOnTerminal(SimulatedInstrument& instrument, const TerminalOptions& options,
                  std::string& problem);

}  // namespace skyhaul
