#pragma once

#include "app/settings.h"
#include "app/settings/values.h"
#include "core/operation.h"
#include "platform/platform.h"

namespace skyhaul {

// What a run works with, from the stored settings. A header text that is at its default is one that
// nobody has given: it stays empty. A port name at its default is one that nobody has chosen: the
// instrument is looked for on all ports. "COM7" and "\\.\COM17", in upper or lower case, are the
// ports of these numbers, 1 to 9999, whatever the system calls them. A gap that is not 0 to
// kMostGap_m metres becomes its default, and a status says so.
Settings MakeRunSettings(const SettingValues& values, const SettingValues& defaults,
                         const SerialFunctions& serial, const Operation& operation);

// The same of the settings that are stored now; reads them without writing. When that fails a
// message is shown and the defaults are taken.
Settings LoadRunSettings(const Platform& platform, const Operation& operation);

}  // namespace skyhaul
