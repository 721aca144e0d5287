#pragma once

#include "device/job.h"

namespace skyhaul::flytec {

// What the instrument says behind "$PBRANS," when an airspace has arrived, as the person reads it.
// '1' is success.
const char* CtrAnswerText(char answer);

// Job procedure: sends the selected ones of job.data.airspaces to the instrument, each acknowledged
// before the next one; the progress tells which one is on its way and how many were taken. One that
// cannot be told to the instrument is named in a message and passed over. Returns the number that
// the instrument has taken, which job.data.sent has too, or a negative number after a message that
// names the airspace (or the statuses of an abort); the last status is then "% CTR segments sent",
// or, when the sentence that failed was the first or second of an airspace, "CTR name sent" or "CTR
// remark sent".
int WriteCtrJob(Job& job);

}  // namespace skyhaul::flytec
