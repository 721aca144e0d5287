#pragma once

#include <string>
#include <vector>

#include "core/operation.h"
#include "platform/platform.h"

namespace skyhaul {

// Prints where the settings are, and each with its value; those that differ from their default are
// marked and show it. Of a password only whether it is set. Returns the exit status.
int PrintSettings(const Platform& platform, const Operation& operation, bool as_json);

// Changes settings, each written as Name=value, all of them or, when something is wrong with one,
// none. A password's name alone reads a line from standard input; an empty password removes it.
// Returns the exit status.
int ChangeSettings(const Platform& platform, const Operation& operation,
                   const std::vector<std::string>& assignments);

}  // namespace skyhaul
