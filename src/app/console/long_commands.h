#pragma once

#include "app/command_line/long_options.h"
#include "app/console/console_shell.h"
#include "commands/session.h"

namespace skyhaul {

// Does what a long option asks for and prints the result. Returns the program's exit status.
int RunLongCommand(Session& session, Console& console, const LongOptions& options);

}  // namespace skyhaul
