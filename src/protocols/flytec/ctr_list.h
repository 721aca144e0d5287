#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "device/job.h"

namespace skyhaul::flytec {

// The list ends with a sentence of its own, not with a silence: an instrument may think for any
// time between two airspaces.
inline constexpr uint32_t kNoLimit_ms = UINT32_MAX;  // 49 days

// Asks for the instrument's airspaces (CTRs) and waits for each byte at most so long. The link must
// be at rest. Returns 0, also for an empty list; kTimedOut when the list was broken or not closed,
// kPortFailed or kAborted. A problem is the message to be shown; empty when there is none.
int ReadCtrList(Job& job, uint32_t longest_silence_ms, std::vector<CtrRecord>& airspaces,
                std::string& problem);

// Job procedure: reads the instrument's airspaces (CTRs) into job.data.airspaces. The list has no
// time limit: it lasts until the instrument closes it or the person aborts. Returns their number,
// or a negative number after a message (or "Transfer aborted"); the airspaces are then as they
// were.
int ReadCtrJob(Job& job);

}  // namespace skyhaul::flytec
