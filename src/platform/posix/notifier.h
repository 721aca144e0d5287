#pragma once

#include "platform/platform.h"

namespace skyhaul {

// A client is the path of a bound AF_UNIX datagram socket; each text is one datagram. A client that
// failed once is sent to without waiting until it takes a text again.
NotifierFunctions PosixNotifier();

}  // namespace skyhaul
