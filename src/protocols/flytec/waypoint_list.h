#pragma once

#include "device/job.h"

namespace skyhaul::flytec {

// Job procedure: reads the instrument's waypoints into job.data.waypoints, each with the time of
// the request as its time stamp. Returns their number, or a negative number after a message (or
// "Transfer aborted"); the waypoints are then as they were.
int ReadWaypointsJob(Job& job);

}  // namespace skyhaul::flytec
