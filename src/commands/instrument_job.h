#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "commands/session.h"
#include "device/job_runner.h"

namespace skyhaul {

// Which instrument a request is for and how it is reached.
struct InstrumentRequest {
  uint32_t protocol_type = 0;
  std::string port;          // a port's own name; empty: by its number, or what the settings say
  uint32_t port_number = 0;  // 1 and up; 0: not given
  uint32_t attempts = 0;     // one-second attempts to connect; 0: the usual number
  std::string client;        // who wants to know the positions of flights; empty: nobody
  std::optional<uint32_t> report_interval_s;  // between two positions; empty: what the settings say
};

// What a job left behind.
struct JobEnd {
  int result = -1;  // negative: it failed and has said why
  InstrumentIdentity identity;
  JobData data;
};

using JobEndRoutine = std::function<void(JobEnd)>;

// A job's request for the instrument, filled from the session.
JobRequest MakeJobRequest(const Session& session, const InstrumentRequest& instrument,
                          uint32_t access_type);

// Starts a job. `end` is called once, on the thread that owns the document: at once when no job
// could be started, which has been said, else through Shell::run_on_owner when the job's thread is
// done, so that `end` may start another. The session must live until then.
void RunInstrumentJob(Session& session, JobRequest request, JobEndRoutine end);

}  // namespace skyhaul
