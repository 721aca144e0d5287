#include "platform/platform.h"

#include "platform/posix/clock.h"
#include "platform/posix/notifier.h"
#include "platform/posix/secret.h"
#include "platform/posix/serial.h"
#include "platform/posix/settings_file.h"
#include "platform/posix/thread.h"

namespace skyhaul {

const Platform& NativePlatform() {
  static const Platform platform = {
      .serial = PosixSerial(),
      .clock = PosixClock(),
      .thread = PosixThread(),
      .notifier = PosixNotifier(),
      .registry = PosixRegistry(),
      .secret = PosixSecret(),
  };
  return platform;
}

bool IsPortName(const std::string& text) {
  return text.starts_with('/');
}

}  // namespace skyhaul
