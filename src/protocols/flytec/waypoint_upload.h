#pragma once

#include <string>

#include "core/waypoint_record.h"
#include "device/job.h"

namespace skyhaul::flytec {

// Why a waypoint cannot be told to the instrument; null when it can.
const char* WaypointObstacle(const WaypointRecord& waypoint);

// The sentence that puts a waypoint without an obstacle into the instrument's memory under a name
// of 17 characters, checksum, CR and LF included. The instrument makes the short name itself. The
// position is rounded to a thousandth of a minute.
std::string WaypointSentence(const WaypointRecord& waypoint, const std::string& name);

// Job procedure: sends job.data.waypoints to the instrument, which acknowledges none of them. Each
// is sent under its description, or its name when that is empty, made different from the others'
// where it must be: a name that the instrument knows already overwrites. A waypoint with an
// obstacle is named in a message and passed over. Returns the number sent, which job.data.sent has
// too, or a negative number after "% waypoints sent" with those that left before a failure or an
// abort.
int WriteWaypointsJob(Job& job);

}  // namespace skyhaul::flytec
