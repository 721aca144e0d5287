#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/platform.h"

namespace skyhaul {

// The serial ports with hardware that sysfs (mounted at sysfs_root) lists, with names below
// dev_root: USB adapters first, because nearly every instrument is connected to one, then the
// others; each group in natural order (ttyUSB2 before ttyUSB10). Numbers run from 1; ports beyond
// kMaxPorts are dropped. Returns 0, or -1 when the list cannot be read.
int ListPorts(const std::string& sysfs_root, const std::string& dev_root,
              std::vector<PortInfo>& ports);

// The name of the port with that number, or "COM<number>", which no port is called.
std::string PortName(const std::string& sysfs_root, const std::string& dev_root, uint32_t number);

}  // namespace skyhaul
