#include "instruments/host.h"

#include <cstdio>
#include <string>

#include "core/text/printable.h"
#include "instruments/pty_host.h"

namespace skyhaul {

namespace {

void PrintPath(void*, const std::string& terminal_path) {
  // Flushed at once: a script reads the path from a pipe and waits for it.
  (void)std::printf("%s\n", terminal_path.c_str());
  (void)std::fflush(stdout);
}

}  // namespace

int RunBehindTerminal(SimulatedInstrument& instrument, const Choices& choices,
                      ConversationLog* log) {
  TerminalOptions options{
      .link_path = choices.link_path, .log = log, .stop = &StopOnSignals(), .on_ready = PrintPath};
  std::string problem;
  if (RunOnTerminal(instrument, options, problem) == 0) return 0;
  (void)std::fprintf(stderr, "skyhaul-instrument: %s\n", PrintableLines(problem).c_str());
  return 1;
}

}  // namespace skyhaul
