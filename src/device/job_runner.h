#pragma once

#include <cstdint>
#include <string>

#include "device/job.h"

namespace skyhaul {

// How a job finds its port.
struct PortChoice {
  bool automatic = false;  // try every port of the system, the configured one first
  std::string configured;  // port name, up to 80 characters
};

struct JobRequest {
  const Platform* platform = nullptr;
  const Shell* shell = nullptr;
  uint32_t access_type = 0;
  uint32_t protocol_type = 0;  // the place in the job table
  int32_t parameter = 0;
  bool join_tracks = false;
  bool verify = true;
  FlightChoice choice;
  PortChoice port;
  uint32_t attempts = kDefaultAttempts;
  PositionReports reports;
  JobCompletion completion = nullptr;
  void* completion_context = nullptr;
  JobData data;       // what to upload
  std::string title;  // what the log of conversations says at the job's start: one line
};

// Starts a job on a thread of its own. There is at most one at a time.
// Returns 0 when the thread runs, or -1 after a message titled "GPS access" (or "API32 call"); a
// job that is running then is left untouched. The completion routine is called only after a start
// that returned 0.
int StartJob(JobTable table, JobRequest request);

// Asks the current job to stop: it ends at its next look at the abort flag. Returns 0, or -1 when
// there is none, after a message when shell is not null.
int AbortJob(const Shell* shell);

// Waits until no job's procedure runs, and until the thread of the last one has ended. For the
// thread that starts jobs. A completion routine runs a moment before its job has ended, so an owner
// that has been handed a job's outcome calls this before it starts another job.
void WaitForJobEnd();

bool JobRunning();

// A job that has made itself quiet stays current when it has ended, with its results, until whoever
// made it quiet releases it. Does nothing while it runs, or when there is none.
void ReleaseQuietJob();

// Waits for two seconds when a job runs; returns at once when none does.
void PauseForRunningJob(const Platform& platform);

// True from a job's failure until the next start.
bool LastJobFailed();

}  // namespace skyhaul
