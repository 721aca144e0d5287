#pragma once

#include <string>

namespace skyhaul {

// The other programs that have a device open, as a person knows them: "cat (77), minicom (78)".
// Empty when there are none or the system does not show them: a user sees only his own programs. Of
// a pseudo-terminal the program that made it, on its other end, does not count. The device's path
// has no links; proc_root is /proc.
std::string OtherPortUsers(const std::string& proc_root, const std::string& device);

}  // namespace skyhaul
