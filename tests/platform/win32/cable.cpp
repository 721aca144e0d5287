#include "tests/platform/win32/cable.h"

namespace skyhaul {

std::string ComPort(uint32_t number) {
  return Serial().name_of(nullptr, number);
}

Cable::Cable() : name(ComPort(kCablePorts[0])), instrument(ComPort(kCablePorts[1])) {}

bool HasCable() {
  return std::getenv("SKYHAUL_UNPLUG") != nullptr;
}

std::vector<NoPort> NoPorts() {
  return {
      {R"(\\.\COM49)", PortProblem::kMissing, "There is no port COM49: --ports lists the ports"},
      {R"(\\.\no such device)", PortProblem::kMissing, "There is no port no such device"},
      {"COM10", PortProblem::kMissing, "There is no port COM10"},
      {"a file", PortProblem::kMissing, "There is no port a file"},
      {"", PortProblem::kMissing, "There is no port"},
  };
}

}  // namespace skyhaul
