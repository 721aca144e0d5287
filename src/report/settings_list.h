#pragma once

#include <string>

#include "settings/values.h"

namespace skyhaul {

// All settings with the place where they are kept. Those that differ from their default are marked
// and show it; of a password only whether it is set. Text for a terminal, lines ended by a line
// feed.
std::string SettingsText(const std::string& place, const SettingValues& values,
                         const SettingValues& defaults);

// The same as a JSON object; docs/settings.md has the keys.
std::string SettingsJson(const std::string& place, const SettingValues& values,
                         const SettingValues& defaults);

}  // namespace skyhaul
