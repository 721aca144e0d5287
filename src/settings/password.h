#pragma once

#include <string>

#include "platform/platform.h"
#include "settings/values.h"

namespace skyhaul {

// Passwords are not kept in the settings: what stands there is a marker with the id under which the
// system keeps the secret. Only a marker of this form is followed; any other bytes that are not all
// zero say that a password was stored in a form that this program does not read.

inline constexpr size_t kLongestPassword = 40;  // bytes

bool PasswordIsSet(const SecretMarker& marker);

// Keeps a password under a new id. Returns kDone with the marker to store, or what the system says;
// then nothing has changed. The secret of an older marker stays until ForgetPassword() is called,
// so that a run that cannot save its settings loses nothing.
SecretResult KeepPassword(const SecretFunctions& secrets, const std::string& name,
                          const std::string& password, SecretMarker& marker, std::string& reason);

// Gives the password of a marker. kMissing: there is no password, or the system does not have it.
SecretResult ReadPassword(const SecretFunctions& secrets, const std::string& name,
                          const SecretMarker& marker, std::string& password, std::string& reason);

// Removes the secret of a marker, when there is one.
void ForgetPassword(const SecretFunctions& secrets, const std::string& name,
                    const SecretMarker& marker);

}  // namespace skyhaul
