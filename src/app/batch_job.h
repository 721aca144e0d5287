#pragma once

#include <string>

#include "app/batch.h"
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
// from the command line, or else from the settings. Returns 0, or -1 after a message when the
// command line names a port that there cannot be.
int MakeRequest(const BatchRun& run, const CommandLineBlock& block, const Shell& shell,
                uint32_t access_type, JobRequest& request);

// Runs one job to its end; an interrupt aborts it. The outcome's result is negative on failure,
// which has been said.
JobOutcome RunJobToEnd(const BatchRun& run, const Shell& shell, JobRequest request);

}  // namespace skyhaul
