#pragma once

#include <string>
#include <vector>

#include "device/job.h"
#include "instruments/bench.h"
#include "protocols/sentence/checksum.h"
#include "tests/support/recording_shell.h"
#include "tests/support/scripted_instrument.h"

namespace skyhaul {

// A sentence with its checksum, CR and LF.
inline std::string Sentence(const std::string& body) {
  std::string sentence = "$" + body;
  AppendNmeaChecksum(sentence, 200);
  return sentence;
}

// A job on a bench with a scripted instrument that names itself as told.
struct FlytecBench {
  explicit FlytecBench(const std::string& device = "6030", const std::string& software = "3.30") {
    script.answers["$PBRSNP,"] = {
        Sentence("PBRSNP," + device + ",JIMI HENDRIX     ,01001," + software)};
    instrument = MakeScripted(script);
    bench.instrument = &instrument;
    bench.abort = [](void* context) { static_cast<Operation*>(context)->aborted = true; };
    bench.abort_context = &job.operation;
    platform = BenchPlatform(bench);
    shell = MakeShell(recorder);
    job.operation.shell = &shell;
    job.link.platform = &platform;
    job.link.operation = &job.operation;
    job.link.port_name = bench.instrument_port;
  }
  FlytecBench(const FlytecBench&) = delete;
  FlytecBench& operator=(const FlytecBench&) = delete;

  ScriptedInstrument script;
  SimulatedInstrument instrument;
  Bench bench;
  Platform platform;
  RecordingShell recorder;
  Shell shell;
  Job job;
};

}  // namespace skyhaul
