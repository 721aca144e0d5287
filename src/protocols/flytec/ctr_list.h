#pragma once

#include "device/job.h"

namespace skyhaul::flytec {

// Job procedure: reads the instrument's airspaces (CTRs) into job.data.airspaces. The list has no
// time limit: it lasts until the instrument closes it or the person aborts. Returns their number,
// or a negative number after a message (or "Transfer aborted"); the airspaces are then as they
// were.
int ReadCtrJob(Job& job);

}  // namespace skyhaul::flytec
