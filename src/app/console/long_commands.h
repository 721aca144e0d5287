#pragma once

#include "app/command_line/long_options.h"
#include "core/operation.h"
#include "platform/platform.h"

namespace skyhaul {

// Carries out a long option: prints its result to standard output. Returns the exit status.
int RunLongCommand(const Platform& platform, const Operation& operation,
                   const LongOptions& options);

}  // namespace skyhaul
