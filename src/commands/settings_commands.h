#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "commands/session.h"
#include "settings/assignment.h"
#include "settings/values.h"

namespace skyhaul {

struct StoredSettings {
  std::string place;  // where they are kept, for a person
  SettingValues values;
  SettingValues defaults;
};

// Reads all settings without writing anything. Empty after a message when they cannot be read.
std::optional<StoredSettings> ReadSettings(const Session& session);

// Changes settings, all of them or, when something is wrong with one, none. Every assignment has
// its value, and no setting has two. Returns how many settings have another value now; empty after
// a message.
std::optional<size_t> ChangeSettings(const Session& session,
                                     const std::vector<Assignment>& assignments);

}  // namespace skyhaul
