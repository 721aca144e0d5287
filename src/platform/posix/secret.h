#pragma once

#include "platform/platform.h"

namespace skyhaul {

// Secrets in the desktop's secret service. Its library is loaded when the first secret is asked
// for; a computer without it has no service.
SecretFunctions PosixSecret();

}  // namespace skyhaul
