#pragma once

#include "device/job.h"

namespace skyhaul {

// The procedures of all families that have a driver.
const JobTable& AllJobs();

}  // namespace skyhaul
