#include "platform/platform.h"

#include "platform/win32/clock.h"
#include "platform/win32/notifier.h"
#include "platform/win32/port_name.h"
#include "platform/win32/registry.h"
#include "platform/win32/secret.h"
#include "platform/win32/serial.h"
#include "platform/win32/thread.h"

namespace skyhaul {

const Platform& NativePlatform() {
  static const Platform platform = {
      .serial = Win32Serial(),
      .clock = Win32Clock(),
      .thread = Win32Thread(),
      .notifier = Win32Notifier(),
      .registry = Win32Registry(),
      .secret = Win32Secret(),
  };
  return platform;
}

bool IsPortName(const std::string& text) {
  return IsDeviceName(text);
}

}  // namespace skyhaul
