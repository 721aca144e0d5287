#pragma once

#include <string>
#include <vector>

#include "device/job.h"

namespace skyhaul::flytec {

// Asks for the instrument's waypoints, once more after nothing but silence (an empty memory is
// silent too) and after a list that had damage between its
// waypoints or went on when its silence had ended it. Each waypoint has the time of the request as
// its time stamp. The link must be at rest. Returns 0, also for an empty list; kTimedOut when a
// list was broken, kPortFailed, kAborted or kNotAtRest. A problem is the message to be shown; empty
// when there is none or it was shown.
int ReadWaypointList(Job& job, std::vector<WaypointRecord>& waypoints, std::string& problem);

// Job procedure: reads the instrument's waypoints into job.data.waypoints, as
// ReadWaypointList() gives them. Returns their number, or a negative number after a message (or
// "Transfer aborted"); the waypoints are then as they were.
int ReadWaypointsJob(Job& job);

}  // namespace skyhaul::flytec
