#include "commands/list_ports.h"

#include "core/operation.h"

namespace skyhaul {

std::optional<std::vector<PortInfo>> ListPorts(const Session& session) {
  const SerialFunctions& serial = session.platform->serial;
  std::vector<PortInfo> ports;
  if (serial.list(serial.context, ports) == 0) return ports;
  ShowMessage(Operation{.shell = session.shell}, "The system's list of serial ports cannot be read",
              "Serial ports");
  return std::nullopt;
}

}  // namespace skyhaul
