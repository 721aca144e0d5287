#include "transport/port_choice.h"

#include <algorithm>
#include <utility>

namespace skyhaul {

namespace {

std::vector<std::string> ListedNames(const Platform& platform) {
  std::vector<PortInfo> ports;
  std::vector<std::string> names;
  if (platform.serial.list(platform.serial.context, ports) != 0) return names;
  for (const PortInfo& port : ports) names.push_back(port.name);
  return names;
}

}  // namespace

std::vector<std::string> CandidatePorts(const Platform& platform, const std::string& configured) {
  std::vector<std::string> names = ListedNames(platform);
  if (names.empty()) names.push_back(platform.serial.name_of(platform.serial.context, 1));
  const auto found = std::find(names.begin(), names.end(), configured);
  if (found != names.end()) std::swap(*found, names.front());
  return names;
}

std::string NewPort(const Platform& platform, PortMemory& memory) {
  const std::vector<std::string> now = ListedNames(platform);
  std::string pick;
  if (memory.seen && !now.empty()) {
    if (memory.names.empty()) {
      pick = now.back();
    } else {
      const auto is_new = [&](const std::string& name) {
        return std::find(memory.names.begin(), memory.names.end(), name) == memory.names.end();
      };
      const auto found = std::find_if(now.begin(), now.end(), is_new);
      if (found != now.end()) pick = *found;
    }
  }
  memory.seen = true;
  memory.names = now;
  return pick;
}

}  // namespace skyhaul
