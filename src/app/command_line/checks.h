#pragma once

#include <string>

#include "app/command_line/command_line_block.h"
#include "app/command_line/keywords.h"

namespace skyhaul {

// Whether what was asked for fits together: the command, the instrument, USB, and what a command
// needs besides. Returns 0, or -1 with the message to show.
int CheckBlock(const CommandLineBlock& block, const CommandLineHost& host, std::string& message);

}  // namespace skyhaul
