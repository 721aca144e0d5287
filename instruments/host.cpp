#include "instruments/host.h"

#include <cstdio>
#include <string>

#include "core/text/printable.h"
#include "instruments/pty_host.h"
#include "transport/log_file.h"

namespace skyhaul {

namespace {

void Tell(const std::string& problem) {
  (void)std::fprintf(stderr, "skyhaul-instrument: %s\n", PrintableLines(problem).c_str());
}

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
  Tell(problem);
  return 1;
}

int RunLogged(const std::string& path, const std::function<int(ConversationLog*)>& run) {
  if (path.empty()) return run(nullptr);
  LogFile file;
  std::string problem = OpenLogFile(file, path);
  if (!problem.empty()) return Refuse(problem);
  ConversationLog log{.write = WriteLogLine, .context = &file};
  // As a job's first line, so that a line which an earlier run left cut off is passed over.
  LogRemark(log, "skyhaul-instrument", 0);
  const int status = run(&log);
  problem = CloseLogFile(file);
  if (!problem.empty()) Tell(problem);
  return status;
}

}  // namespace skyhaul
