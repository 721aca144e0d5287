#include "tests/platform/cable.h"

#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>

#include <array>

namespace skyhaul {

// A pseudo-terminal: the program opens its slave, and the instrument has the master.
Cable::Cable() : instrument(posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC)) {
  const int master = static_cast<int>(instrument.handle);
  std::array<char, 100> buffer{};
  if (grantpt(master) == 0 && unlockpt(master) == 0 &&
      ptsname_r(master, buffer.data(), buffer.size()) == 0) {
    name = buffer.data();
  }
}

bool HasCable() {
  return true;
}

std::vector<NoPort> NoPorts() {
  return {
      {"/dev/none", PortProblem::kMissing, "There is no port /dev/none"},
      {"/dev/null/below", PortProblem::kMissing, "There is no port /dev/null/below"},
      {"/etc/passwd", PortProblem::kOther, "/etc/passwd is not a serial port"},
      {"/dev/null", PortProblem::kOther, "/dev/null is not a serial port"},
      {"COM7", PortProblem::kMissing, "There is no port 7: --ports lists the ports"},
      {"dev/null", PortProblem::kMissing, "There is no port dev/null: --ports lists the ports"},
      {"", PortProblem::kMissing, "There is no port"},
  };
}

}  // namespace skyhaul
