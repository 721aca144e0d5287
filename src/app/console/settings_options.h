#pragma once

#include <string>
#include <vector>

#include "app/console/console_shell.h"
#include "commands/session.h"

namespace skyhaul {

// Prints where the settings are, and each with its value. Returns the exit status.
int PrintSettings(const Session& session, Console& console, bool as_json);

// Changes settings, each written as Name=value, all of them or, when something is wrong with one,
// none. A password's name alone reads a line from standard input; an empty password removes it.
// Returns the exit status.
int AssignSettings(const Session& session, Console& console,
                   const std::vector<std::string>& assignments);

}  // namespace skyhaul
