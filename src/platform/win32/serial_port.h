#pragma once

#include <bit>
#include <cstdint>

#include "platform/platform.h"
#include "platform/win32/handle.h"
#include "platform/win32/windows_api.h"

namespace skyhaul {

// One open port. The blocks of overlapped calls must outlive the calls, so they live here. The
// members go in reverse order: the file first, so that nothing is under way when its events go.
struct SerialPort {
  OwnedHandle claim{nullptr};  // keeps other programs of ours out
  OwnedHandle comm_event_signal{nullptr};
  OwnedHandle write_signal{nullptr};
  OwnedHandle read_signal{nullptr};
  OwnedHandle file{nullptr};
  OVERLAPPED comm_event{};
  OVERLAPPED write{};
  OVERLAPPED read{};
  DWORD write_ms_per_byte = 0;  // as configured
  uint32_t losses = 0;          // answers of the driver that told of bytes lost or damaged
};

// The port of a handle that open() has given.
inline SerialPort& PortOf(SerialHandle handle) {
  return *std::bit_cast<SerialPort*>(handle);
}

}  // namespace skyhaul
