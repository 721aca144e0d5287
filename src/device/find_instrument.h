#pragma once

#include "device/job.h"

namespace skyhaul {

// One try to identify the instrument on the open port. Returns 0 when it answered, kTimedOut or
// kPortFailed when it is not on this port, and any other negative number when the search is
// over: the person aborted it, or the instrument was found and cannot be used; then a message has
// been shown.
using IdentifyOnce = int (*)(Job& job);

// Looks for the instrument on every candidate port of a job whose port is chosen automatically: in
// each of the link's rounds every port is opened once and asked once, the configured one first.
// Returns 0 with the port open and the instrument identified, or -1 after a message (or "Transfer
// aborted").
int FindInstrument(Job& job, const SerialSettings& settings, IdentifyOnce identify);

}  // namespace skyhaul
