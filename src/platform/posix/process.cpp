#include "platform/posix/process.h"

#include <signal.h>

#include <cerrno>

#include "core/text/printable.h"
#include "platform/file.h"

namespace skyhaul {

bool ProcessLives(pid_t process) {
  // 0 and negative numbers would ask for groups of processes.
  if (process <= 0 || process > kMaxProcess) return false;
  return kill(process, 0) == 0 || errno == EPERM;
}

std::string ProcessText(const std::string& proc_root, pid_t process) {
  const std::string number = std::to_string(process);
  std::string name;  // "minicom\n"
  ReadWholeFile(proc_root + "/" + number + "/comm", name);
  // A program gives itself any name, a line feed in it too, which would forge a line of output.
  name = OneLine(name);
  return name.empty() ? "process " + number : name + " (" + number + ")";
}

}  // namespace skyhaul
