#pragma once

#include <gtest/gtest.h>

#include "protocols/sentence/checksum.h"
#include "tests/support/job_bench.h"

namespace skyhaul::flytec {

using Texts = std::vector<std::string>;

// A sentence with its checksum, CR and LF.
inline std::string Sentence(const std::string& body) {
  std::string sentence = "$" + body;
  AppendNmeaChecksum(sentence, 200);
  return sentence;
}

// A job on a bench with a scripted instrument that names itself as told.
struct FlytecBench : ScriptedBench {
  explicit FlytecBench(const std::string& device = "6030", const std::string& software = "3.30") {
    script.answers["$PBRSNP,"] = {
        Sentence("PBRSNP," + device + ",JIMI HENDRIX     ,01001," + software)};
  }
};

// What goes wrong after an instrument has said its name, and what is told about it.
struct Failure {
  std::string answer;  // to the request
  Fault fault;
  std::string message;
};

// Runs a job that must fail with one message and deliver nothing.
inline void ExpectFailure(FlytecBench& b, JobProcedure procedure, const char* request,
                          const Failure& failure) {
  b.script.answers[request] = {failure.answer};
  b.bench.fault = failure.fault;
  EXPECT_LT(procedure(b.job), 0) << failure.message;
  EXPECT_EQ(b.recorder.messages, Texts{failure.message});
  const JobData& data = b.job.data;
  EXPECT_TRUE(data.flights.empty() && data.waypoints.empty() && data.airspaces.empty());
}

}  // namespace skyhaul::flytec
