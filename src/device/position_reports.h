#pragma once

#include <cstdint>

#include "core/track_point.h"
#include "device/job.h"

namespace skyhaul {

// Sends a fix to the job's client as "Pos=<latitude>,<longitude>,<GPS altitude in metres>" when it
// is at least the report interval after the last one sent. last_time is that one's time, 0 at
// first.
void ReportPosition(const Job& job, const TrackPoint& point, uint32_t& last_time);

}  // namespace skyhaul
