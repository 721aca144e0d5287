#include "device/job_runner.h"

#include <condition_variable>
#include <memory>
#include <mutex>
#include <new>
#include <utility>

#include "transport/port_choice.h"
#include "transport/trace.h"
#include "transport/trace_log.h"

namespace skyhaul {

namespace {

constexpr size_t kMaxPortName = 80;
constexpr uint32_t kRunningJobPause_ms = 2000;
constexpr const char* kTitle = "GPS access";

struct RunningJob {
  Job job;
  JobProcedure procedure = nullptr;
  JobCompletion completion = nullptr;
  void* completion_context = nullptr;
  bool ended = false;
};

struct Runner {
  std::mutex mutex;
  std::condition_variable job_ended;
  std::unique_ptr<RunningJob> current;  // null: no job
  bool last_failed = false;

  // Only for the thread that starts jobs: the last thread started, until it is joined.
  const Platform* thread_platform = nullptr;
  ThreadHandle thread = 0;
};

Runner& TheRunner() {
  static Runner runner;
  return runner;
}

void RunJob(void* argument) {
  auto& running = *static_cast<RunningJob*>(argument);
  Job& job = running.job;
  job.result = running.procedure(job);
  ClosePort(job.link);  // before the completion routine, after which the port may be wanted again
  Runner& runner = TheRunner();
  {
    const std::scoped_lock lock(runner.mutex);
    runner.last_failed = job.result < 0;  // the completion routine may ask for it
  }
  // Without the lock, and before the job counts as ended: the completion routine may ask for the
  // runner's state, and takes the results before whoever waits for the end looks for them.
  if (running.completion != nullptr) running.completion(running.completion_context, job);
  const std::scoped_lock lock(runner.mutex);
  running.ended = true;  // a quiet job stays current, so that its results can be looked at
  if (!job.operation.quiet) runner.current.reset();
  runner.job_ended.notify_all();
}

bool Idle(const Runner& runner) {
  return runner.current == nullptr || runner.current->ended;
}

void JoinEndedThread(Runner& runner) {
  if (runner.thread_platform == nullptr) return;
  const ThreadFunctions& thread = runner.thread_platform->thread;
  // Its job has ended, so this takes no longer than the thread's last instructions.
  thread.join(thread.context, runner.thread);
  runner.thread_platform = nullptr;
}

const char* StartRefusal(JobTable table, const JobRequest& request) {
  if (request.access_type >= kAccessTypes) return "Bad access type";
  if (request.protocol_type >= table.size()) return "Bad protocol type";
  if (table[request.protocol_type].procedures[request.access_type] == nullptr) {
    return "Unsupported access function";
  }
  return nullptr;
}

void SetUpLink(SerialLink& link, const ProtocolJobs& protocol, const JobRequest& request,
               Operation& operation) {
  link.platform = request.platform;
  link.operation = &operation;
  link.attempts = request.attempts;
  link.xon_xoff = protocol.xon_xoff;
  link.port_name = request.port.configured.substr(0, kMaxPortName);
  if (protocol.on_usb) return;  // it has no serial port to look for
  link.automatic = request.port.automatic;
  if (link.automatic) link.candidates = CandidatePorts(*request.platform, link.port_name);
}

std::unique_ptr<RunningJob> MakeJob(const ProtocolJobs& protocol, JobRequest& request) {
  std::unique_ptr<RunningJob> running(new (std::nothrow) RunningJob);
  if (running == nullptr) return running;
  running->procedure = protocol.procedures[request.access_type];
  running->completion = request.completion;
  running->completion_context = request.completion_context;
  Job& job = running->job;
  job.operation.shell = request.shell;
  job.access_type = request.access_type;
  job.protocol_type = request.protocol_type;
  job.parameter = request.parameter;
  job.join_tracks = request.join_tracks;
  job.verify = request.verify;
  job.choice = std::move(request.choice);
  job.reports = std::move(request.reports);
  job.data = std::move(request.data);
  SetUpLink(job.link, protocol, request, job.operation);
  return running;
}

}  // namespace

int StartJob(JobTable table, JobRequest request) {
  Operation no_job;
  no_job.shell = request.shell;
  Runner& runner = TheRunner();
  std::unique_lock lock(runner.mutex);
  runner.last_failed = false;
  // Unlocked for the message: a person may look at it for minutes.
  const auto refuse = [&](const char* text, const char* title) {
    lock.unlock();
    ShowMessage(no_job, text, title);
    return -1;
  };

  if (const char* refusal = StartRefusal(table, request)) return refuse(refusal, kTitle);
  if (runner.current != nullptr) return refuse("Port/USB is being used", kTitle);
  JoinEndedThread(runner);
  std::unique_ptr<RunningJob> running = MakeJob(table[request.protocol_type], request);
  if (running == nullptr) return refuse("Access data block memory allocation", kTitle);
  // Only now: a start that is refused leaves the trace of the job before, or of the one that runs.
  ClearTrace();
  const ClockFunctions& clock = request.platform->clock;
  LogTracedJob(request.title, clock.tick_ms(clock.context));

  // The job is current before its thread runs, so that the thread finds itself as the current job.
  runner.current = std::move(running);
  const ThreadFunctions& thread = request.platform->thread;
  if (thread.start(thread.context, RunJob, runner.current.get(), &runner.thread) != 0) {
    runner.current.reset();
    return refuse("Could not create GPS access thread", "API32 call");
  }
  runner.thread_platform = request.platform;
  return 0;
}

int AbortJob(const Shell* shell) {
  Runner& runner = TheRunner();
  std::unique_lock lock(runner.mutex);
  // Under the lock to the end, so that the job cannot go while its abort flag is set.
  if (runner.current == nullptr) {
    lock.unlock();
    Operation no_job;
    no_job.shell = shell;
    ShowMessage(no_job, "Port not in use", "Abort GPS access");
    return -1;
  }
  Operation& operation = runner.current->job.operation;
  ShowStatus(operation, "Aborting transfer");
  operation.aborted = true;
  return 0;
}

void WaitForJobEnd() {
  Runner& runner = TheRunner();
  {
    std::unique_lock lock(runner.mutex);
    runner.job_ended.wait(lock, [&] { return Idle(runner); });
  }
  JoinEndedThread(runner);
}

bool JobRunning() {
  Runner& runner = TheRunner();
  const std::scoped_lock lock(runner.mutex);
  return !Idle(runner);
}

void ReleaseQuietJob() {
  Runner& runner = TheRunner();
  const std::scoped_lock lock(runner.mutex);
  if (Idle(runner)) runner.current.reset();
}

void PauseForRunningJob(const Platform& platform) {
  if (!JobRunning()) return;
  platform.clock.wait(platform.clock.context, kRunningJobPause_ms);
}

bool LastJobFailed() {
  Runner& runner = TheRunner();
  const std::scoped_lock lock(runner.mutex);
  return runner.last_failed;
}

}  // namespace skyhaul
