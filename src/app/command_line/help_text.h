#pragma once

#include <string>

namespace skyhaul {

// What --help prints: lines of less than 80 columns, made from the tables of the long options, the
// keywords and the instrument names.
std::string HelpText();

}  // namespace skyhaul
