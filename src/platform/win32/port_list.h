#pragma once

#include <vector>

#include "platform/platform.h"
#include "platform/win32/windows_api.h"

namespace skyhaul {

// Below HKEY_LOCAL_MACHINE: what the drivers of the ports that are there now have written. A value
// is a port, its name the driver's device and its data the port's name.
inline constexpr const wchar_t* kSerialPortsKey = L"HARDWARE\\DEVICEMAP\\SERIALCOMM";

// The serial ports that a registry key lists, in its order; their numbers are those of their COM
// names. Values that name no COM port are passed over, and so is what comes after the first
// kMaxPorts ports or the first 100 values. Returns 0, or -1 when the key cannot be opened.
int ListPorts(HKEY root, const wchar_t* key_path, std::vector<PortInfo>& ports);

}  // namespace skyhaul
