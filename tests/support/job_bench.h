#pragma once

#include "device/job.h"
#include "instruments/bench.h"
#include "tests/support/recording_shell.h"
#include "tests/support/scripted_instrument.h"

namespace skyhaul {

// A job on a bench, with a shell that remembers what it was told.
struct JobBench {
  JobBench() {
    bench.abort = [](void* context) { static_cast<Operation*>(context)->aborted = true; };
    bench.abort_context = &job.operation;
    platform = BenchPlatform(bench);
    shell = MakeShell(recorder);
    job.operation.shell = &shell;
    job.link.platform = &platform;
    job.link.operation = &job.operation;
    job.link.port_name = bench.instrument_port;
  }
  JobBench(const JobBench&) = delete;
  JobBench& operator=(const JobBench&) = delete;

  void Connect(const SimulatedInstrument& simulated) {
    instrument = simulated;
    bench.instrument = &instrument;
  }

  SimulatedInstrument instrument;
  Bench bench;
  Platform platform;
  RecordingShell recorder;
  Shell shell;
  Job job;
};

// The same with a scripted instrument.
struct ScriptedBench : JobBench {
  ScriptedBench() { Connect(MakeScripted(script)); }

  ScriptedInstrument script;
};

inline Fault FailWrite(size_t at) {
  return {.kind = FaultKind::kFailWrite, .at = at};
}

inline Fault Unplug(size_t at) {
  return {.kind = FaultKind::kUnplug, .at = at};
}

inline Fault Abort(size_t at) {
  return {.kind = FaultKind::kAbort, .at = at};
}

}  // namespace skyhaul
