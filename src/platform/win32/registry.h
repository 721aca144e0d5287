#pragma once

#include "platform/platform.h"

namespace skyhaul {

inline constexpr const wchar_t* kUserKeyPath = L"Software\\Skyhaul";
inline constexpr const wchar_t* kTemplateKeyPath = L".DEFAULT\\Software\\Skyhaul";

// Settings in the registry: the user's under HKEY_CURRENT_USER, the template's under HKEY_USERS.
// Numbers are DWORDs, texts strings that are written with their own length; the system may add a
// terminating zero, which counts when it is read. It keeps texts in 16-bit characters; sizes are
// those of the same texts in UTF-8.
RegistryFunctions Win32Registry();

}  // namespace skyhaul
