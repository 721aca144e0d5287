#include "app/console/batch_job.h"

#include <utility>

#include "protocols/families.h"

namespace skyhaul {

namespace {

constexpr uint32_t kLookForInterrupt_ms = 50;

void TakeOutcome(void* context, Job& job) {
  auto& outcome = *static_cast<JobOutcome*>(context);
  outcome.result = job.result;
  outcome.description = job.description;
  outcome.owner = job.owner;
  outcome.pilot_name = job.pilot_name;
  outcome.data = std::move(job.data);
}

PositionReports Reports(const BatchRun& run, const CommandLineBlock& block) {
  return {.client = block.notify_client,
          .interval_s = block.send_log_s.value_or(run.settings->report_interval_s)};
}

}  // namespace

JobRequest MakeRequest(const BatchRun& run, const CommandLineBlock& block, const Shell& shell,
                       uint32_t access_type) {
  JobRequest request;
  request.platform = run.platform;
  request.shell = &shell;
  request.access_type = access_type;
  request.protocol_type = ProtocolOf(block.gps_type, block.usb);
  request.join_tracks = block.no_split;
  request.reports = Reports(run, block);
  request.port = run.settings->port;
  if (!block.port_text.empty()) {
    const SerialFunctions& serial = run.platform->serial;
    request.port.automatic = false;
    request.port.configured = block.port_number == 0
                                  ? block.port_text
                                  : serial.name_of(serial.context, block.port_number);
  }
  // An unset or zero time-out leaves the usual number of attempts.
  if (block.timeout_s.value_or(0) > 0) request.attempts = *block.timeout_s;
  return request;
}

JobOutcome RunJobToEnd(const BatchRun& run, JobRequest request) {
  JobOutcome outcome;
  request.completion = TakeOutcome;
  request.completion_context = &outcome;
  if (StartJob(AllJobs(), std::move(request)) != 0) return outcome;
  bool stopping = false;
  while (!WaitForJobEnd(kLookForInterrupt_ms)) {
    if (stopping || run.interrupts == nullptr || run.interrupts() == 0) continue;
    stopping = true;
    AbortJob(nullptr);  // silent when the job has ended by itself meanwhile
  }
  FinishProgressLine(*run.console);
  return outcome;
}

}  // namespace skyhaul
