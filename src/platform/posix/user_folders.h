#pragma once

#include <string>
#include <vector>

#include "platform/user_folders.h"

namespace skyhaul {

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
