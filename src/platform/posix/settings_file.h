#pragma once

#include "platform/platform.h"

namespace skyhaul {

// Settings as a text file that a person can read and edit: skyhaul/settings in the user's folder
// for settings, for the template the same in the system's. It belongs to the user alone (mode
// 0600), is written whole or not at all, and each value is put into what the file holds at that
// moment, under a lock, so that two programs do not undo each other's changes. What a person has
// written around the values is kept.
RegistryFunctions PosixRegistry();

}  // namespace skyhaul
