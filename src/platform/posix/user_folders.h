#pragma once

#include <string>
#include <vector>

namespace skyhaul {

// The user's home folder, from HOME or else the system's list of users; empty when neither knows.
std::string HomeFolder();

// Where programs keep a user's settings: XDG_CONFIG_HOME, else .config in the home folder; empty
// when there is no home folder.
std::string ConfigFolder();

// Where the computer's owner puts settings for everybody, the most important first:
// XDG_CONFIG_DIRS, else /etc/xdg.
std::vector<std::string> SystemConfigFolders();

// The folder for documents that the desktop has set up (user-dirs.dirs), else the home folder, else
// the current one.
std::string DocumentsFolder();

}  // namespace skyhaul
