#pragma once

#include "app/command_line/command_line_block.h"
#include "app/console/console_shell.h"
#include "commands/session.h"

namespace skyhaul {

// Carries out the one command of a command line: fills its request, waits for its end, shows the
// result and tells the client. Returns the program's exit status.
int RunBatch(Session& session, Console& console, const CommandLineBlock& block);

}  // namespace skyhaul
