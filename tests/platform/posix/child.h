#pragma once

#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace skyhaul {

// Runs a function in a child process and returns its result, 0..255, or -1 when it died otherwise.
template <typename Function>
int InChild(Function run) {
  const pid_t child = fork();
  if (child == 0) _exit(run());
  int status = 0;
  if (child < 0 || waitpid(child, &status, 0) != child || !WIFEXITED(status)) return -1;
  return WEXITSTATUS(status);
}

// From now on writing fails where a file would become larger, as on a full disk, or is the end of
// the process there.
inline void LimitFileSize(rlim_t bytes, bool deadly = false) {
  signal(SIGXFSZ, deadly ? SIG_DFL : SIG_IGN);
  const rlimit limit = {.rlim_cur = bytes, .rlim_max = bytes};
  setrlimit(RLIMIT_FSIZE, &limit);
}

}  // namespace skyhaul
