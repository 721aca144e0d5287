#pragma once

#include "platform/platform.h"

namespace skyhaul {

// Secrets encrypted for the user's account (DPAPI), each in a binary value "<name> <id>" beside the
// settings. The id goes into the encryption, so that a value that was moved to another one cannot
// be read.
SecretFunctions Win32Secret();

}  // namespace skyhaul
