#pragma once

#include <cstdint>
#include <string>

#include "core/file_waypoint.h"
#include "device/job.h"

namespace skyhaul::flytec {

// Why a waypoint cannot be sent to the instrument; empty when it can.
std::string WaypointObstacle(const FileWaypoint& waypoint);

// The sentence that puts a waypoint without an obstacle into the instrument's memory under a name
// field of 17 characters, with checksum, CR and LF. The instrument makes the short name itself. The
// position is rounded to a thousandth of a minute, the altitude to a metre.
std::string WaypointSentence(const FileWaypoint& waypoint, const std::string& name);

inline constexpr uint32_t kWaypointRoom = 200;  // what the instruments keep

// Job procedure: sends job.data.waypoints_to_send to the instrument, which acknowledges none of
// them, and reads its list back to verify them unless job.verify is false; see VerifyUpload(). Each
// is sent under its description, or under its name when that is empty, in plain ASCII, cut to 17
// characters and numbered where two would be alike: the instrument overwrites a waypoint whose name
// it has already. A status says how many names were cut or numbered. A waypoint with an obstacle is
// named in a message and passed over. More than kWaypointRoom are refused before anything is sent.
// Returns the number sent, also in job.data.sent, or a negative number: when a failure or an abort
// ends the upload, the last status is "% waypoints sent" with those that were sent before; when not
// all of them were verified, after its message.
int WriteWaypointsJob(Job& job);

}  // namespace skyhaul::flytec
