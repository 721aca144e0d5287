#include "transport/port_choice.h"

#include <algorithm>
#include <utility>

namespace skyhaul {

namespace {

// Empty when the list cannot be read.
std::vector<PortInfo> Listed(const Platform& platform) {
  std::vector<PortInfo> ports;
  if (platform.serial.list(platform.serial.context, ports) != 0) ports.clear();
  return ports;
}

std::vector<std::string> Names(const std::vector<PortInfo>& ports) {
  std::vector<std::string> names;
  for (const PortInfo& port : ports) names.push_back(port.name);
  return names;
}

}  // namespace

std::vector<std::string> CandidatePorts(const Platform& platform, const std::string& configured) {
  std::vector<std::string> names = Names(Listed(platform));
  // A port may work although the system does not list it.
  if (names.empty()) names.push_back(platform.serial.name_of(platform.serial.context, 1));
  const auto found = std::find(names.begin(), names.end(), configured);
  // Swapped and not moved up: of the others any order is as good.
  if (found != names.end()) std::swap(*found, names.front());
  return names;
}

std::string NewPort(const Platform& platform, PortMemory& memory) {
  const std::vector<PortInfo> now = Listed(platform);
  auto pick = now.end();
  if (memory.seen && memory.names.empty()) {
    // Systems number adapters as they come, so the newest is likely to have the highest number.
    pick = std::max_element(now.begin(), now.end(), [](const PortInfo& a, const PortInfo& b) {
      return a.number < b.number;
    });
  } else if (memory.seen) {
    pick = std::find_if(now.begin(), now.end(), [&](const PortInfo& port) {
      return std::find(memory.names.begin(), memory.names.end(), port.name) == memory.names.end();
    });
  }
  // Also when nothing is new: a port that goes and comes back counts as new again.
  memory.seen = true;
  memory.names = Names(now);
  return pick == now.end() ? std::string() : pick->name;
}

}  // namespace skyhaul
