#pragma once

#include <sys/types.h>

#include <string>

namespace skyhaul {

// The largest process number that Linux gives (PID_MAX_LIMIT on 64 bits).
inline constexpr pid_t kMaxProcess = 4'194'304;

// True when there is a process of that number, whoever's it is.
bool ProcessLives(pid_t process);

// A process as a person knows it, "minicom (1234)"; "process 1234" when its name is not shown.
// proc_root is /proc.
std::string ProcessText(const std::string& proc_root, pid_t process);

}  // namespace skyhaul
