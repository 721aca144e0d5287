#pragma once

#include "platform/platform.h"

namespace skyhaul {

// The threads have SIGINT and SIGTERM blocked: those reach the thread that started them.
ThreadFunctions PosixThread();

}  // namespace skyhaul
