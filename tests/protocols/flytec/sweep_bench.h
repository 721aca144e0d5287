#pragma once

#include <string>
#include <vector>

#include "instruments/flytec/flytec_simulator.h"
#include "tests/support/job_bench.h"

namespace skyhaul::flytec {

// No single fault may cost more than asking for the product data 15 times over.
constexpr uint64_t kLongestRun_ms = 45000;

// A conversation with a simulated instrument.
struct SweepBench : JobBench {
  void Run(JobProcedure procedure, const Fault& fault) {
    Connect(flytec_simulator::MakeInstrument(simulator, 57600));
    bench.fault = fault;
    const uint64_t start_ns = bench.now_ns;
    result = procedure(job);
    elapsed_ms = Elapsed_ms(bench, start_ns);
  }

  flytec_simulator::Simulator simulator;
  int result = 0;
  uint64_t elapsed_ms = 0;
};

// Faults of these kinds, one at each place.
inline std::vector<Fault> FaultsAt(const std::vector<FaultKind>& kinds, size_t places,
                                   bool towards_instrument = false) {
  std::vector<Fault> faults;
  for (const FaultKind kind : kinds) {
    for (size_t at = 0; at < places; ++at) {
      faults.push_back({.kind = kind, .towards_instrument = towards_instrument, .at = at});
    }
  }
  return faults;
}

// Faults of these kinds, one at each byte in both directions of a conversation that went well.
inline std::vector<Fault> FaultsAtBytes(const std::vector<FaultKind>& kinds, const Bench& whole) {
  std::vector<Fault> faults = FaultsAt(kinds, whole.sent, true);
  const std::vector<Fault> back = FaultsAt(kinds, whole.received);
  faults.insert(faults.end(), back.begin(), back.end());
  return faults;
}

inline std::string Describe(const Fault& fault) {
  return "fault " + std::to_string(static_cast<int>(fault.kind)) +
         (fault.towards_instrument ? " to" : " from") + " the instrument at " +
         std::to_string(fault.at) + " mask " + std::to_string(fault.flip_mask);
}

}  // namespace skyhaul::flytec
