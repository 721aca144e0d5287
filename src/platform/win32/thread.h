#pragma once

#include "platform/platform.h"

namespace skyhaul {

ThreadFunctions Win32Thread();

}  // namespace skyhaul
