#include "commands/instrument_job.h"

#include <memory>
#include <utility>

#include "commands/now.h"
#include "core/text/date_time.h"
#include "core/version.h"
#include "protocols/families.h"

namespace skyhaul {

namespace {

// A job under way. It is handed from the owner to the job's thread and back.
struct PendingJob {
  Session* session = nullptr;
  JobEndRoutine routine;
  JobEnd end;
};

// "Skyhaul 0.10, 2026-05-24 11:12:13 UTC, Flytec and Brauniger": what a reader of a conversation
// wants to know first.
std::string JobTitle(const Session& session, uint32_t protocol_type) {
  const CalendarTime now = Now(session.platform->clock);
  std::string title =
      "Skyhaul " + VersionText() + ", " + DateText(now) + ' ' + TimeText(now) + " UTC";
  const std::span<const Family> families = Families();
  if (protocol_type < families.size()) {
    title.append(", ").append(families[protocol_type].maker);
  }
  return title;
}

// On the thread that owns the document.
void Deliver(void* argument) {
  // The job's thread has let go of the record when it posted it. It is freed here, also after a
  // failure.
  const std::unique_ptr<PendingJob> pending(static_cast<PendingJob*>(argument));
  // The completion routine runs a moment before its thread ends, and a new job needs that end.
  WaitForJobEnd();
  const InstrumentIdentity& identity = pending->end.identity;
  // A failed connection leaves what the last instrument said, which is still the last that
  // answered.
  if (!identity.description.empty()) pending->session->document->identity = identity;
  pending->routine(std::move(pending->end));
}

// On the job's thread.
void TakeEnd(void* context, Job& job) {
  auto* pending = static_cast<PendingJob*>(context);
  // Moved: the job is freed when this routine returns.
  pending->end = {.result = job.result,
                  .identity = {.description = std::move(job.description),
                               .owner = std::move(job.owner),
                               .pilot_name = std::move(job.pilot_name)},
                  .data = std::move(job.data)};
  const Shell& shell = *pending->session->shell;
  shell.run_on_owner(shell.context, Deliver, pending);
}

}  // namespace

JobRequest MakeJobRequest(const Session& session, const InstrumentRequest& instrument,
                          uint32_t access_type) {
  const SerialFunctions& serial = session.platform->serial;
  JobRequest request;
  request.platform = session.platform;
  request.shell = session.shell;
  request.access_type = access_type;
  request.protocol_type = instrument.protocol_type;
  request.title = JobTitle(session, instrument.protocol_type);
  request.reports = {
      .client = instrument.client,
      .interval_s = instrument.report_interval_s.value_or(session.defaults->report_interval_s)};
  // A port of the request is chosen, so no other one is tried. The name counts before the number.
  request.port = session.defaults->port;
  if (!instrument.port.empty() || instrument.port_number != 0) {
    request.port = {.automatic = false,
                    .configured = instrument.port_number == 0
                                      ? instrument.port
                                      : serial.name_of(serial.context, instrument.port_number)};
  }
  // The usual number stands in the record already.
  if (instrument.attempts > 0) request.attempts = instrument.attempts;
  return request;
}

void RunInstrumentJob(Session& session, JobRequest request, JobEndRoutine end) {
  auto pending = std::make_unique<PendingJob>();
  pending->session = &session;
  pending->routine = std::move(end);
  // From a successful start on the record belongs to the job's thread, and then to Deliver().
  PendingJob* const handed_over = pending.release();
  request.completion = TakeEnd;
  request.completion_context = handed_over;
  if (StartJob(AllJobs(), std::move(request)) == 0) return;
  // No thread has seen the record: it is ours again, and the end comes at once with its failure.
  pending.reset(handed_over);
  pending->routine({});
}

}  // namespace skyhaul
