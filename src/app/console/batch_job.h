#pragma once

#include <string>

#include "app/console/batch.h"
#include "device/job_runner.h"

namespace skyhaul {

// What a job left behind.
struct JobOutcome {
  int result = -1;
  std::string description;
  std::string owner;
  std::string pilot_name;
  JobData data;
};

// The request of a batch run's job: its port, attempts, reports and whether tracks are joined come
// from the command line, or else from the settings.
JobRequest MakeRequest(const BatchRun& run, const CommandLineBlock& block, const Shell& shell,
                       uint32_t access_type);

// Runs one job to its end; an interrupt aborts it. The outcome's result is negative on failure,
// which has been said.
JobOutcome RunJobToEnd(const BatchRun& run, JobRequest request);

}  // namespace skyhaul
