#pragma once

#include <string>

#include "core/operation.h"
#include "platform/platform.h"
#include "settings/values.h"

namespace skyhaul {

// A run without a window only reads: it makes no key and writes nothing.
enum class SettingsAccess { kReadOnly, kReadAndWrite };

// The settings of one run. The rest of the program reads and changes live.
struct SettingsStore {
  const RegistryFunctions* registry = nullptr;
  RegistryHandle key = kNoRegistryHandle;  // open for the run when it may write
  bool created = false;                    // the key was not there before this run
  SettingValues live;
  SettingValues snapshot;  // as last read or written; the defaults before
};

// Loads every setting, once at the start of a run. A value that is missing, of another kind or too
// large is replaced by its default, also in the registry. A user without settings gets those of the
// template, else the defaults. Returns 0, or -1 after a message titled "Registry access error";
// then live has the defaults and nothing will be saved. Lines that make no sense are told as a
// status.
int LoadSettings(const RegistryFunctions& registry, const Operation& operation,
                 SettingsAccess access, SettingsStore& store);

// Writes the settings that were changed, for a new user all of them, and closes the key. Does
// nothing when no key is open. Returns 0, or -1 with the system's reason for the first value that
// could not be written; the others are written all the same where each is written by itself.
int SaveSettings(SettingsStore& store, std::string& reason);

// Closes the key without writing anything. Does nothing when no key is open.
void CloseSettings(SettingsStore& store);

}  // namespace skyhaul
