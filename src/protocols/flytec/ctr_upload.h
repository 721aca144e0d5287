#pragma once

#include "device/job.h"

namespace skyhaul::flytec {

// The text for the character after "$PBRANS,", with which the instrument acknowledges an airspace.
// '1' is success.
const char* CtrAnswerText(char answer);

// Job procedure: sends the selected ones of job.data.airspaces to the instrument and waits for the
// acknowledgement of each before the next one; the progress names the airspace and counts those
// that were taken. An airspace that the instrument cannot hold is named in a message and passed
// over; more than kCtrRoom are refused before anything is sent. Unless job.verify is false the
// instrument's list is read back; see VerifyUpload(). Returns the number that the instrument has
// taken, also in job.data.sent, or a negative number after a message that names the airspace (or
// the statuses of an abort). When the sending has failed, the last status is "% CTR segments sent",
// or "CTR name sent" or "CTR remark sent" when the first or second sentence of an airspace failed.
int WriteCtrJob(Job& job);

}  // namespace skyhaul::flytec
