// How much of a download's time the wire is busy, in virtual time: the time that the bytes of the
// flight take at 57600 baud over the time from its first byte to its last.

#include <benchmark/benchmark.h>

#include <string>

#include "formats/igc/write_igc.h"
#include "instruments/bench.h"
#include "instruments/flight_generator.h"
#include "instruments/flytec/flytec_simulator.h"
#include "protocols/flytec/track_log.h"

namespace skyhaul {
namespace {

constexpr uint64_t kSilence_ms = 2000;     // how the end of a flight is recognised
constexpr uint64_t kFixedPauses_ms = 500;  // before the request

void Download(benchmark::State& state) {
  const auto fixes = static_cast<size_t>(state.range(0));
  flytec_simulator::Simulator simulator;
  std::string text;
  igc::Write(GenerateFlightOfLength({.start_time = 1'100'000'000}, fixes).points, {},
             {.serial = "000"}, text);
  simulator.flights = {flytec_simulator::FlightFromIgc(text)};

  double efficiency = 0;
  while (state.KeepRunning()) {
    SimulatedInstrument instrument = flytec_simulator::MakeInstrument(simulator, 57600);
    Bench bench;
    bench.instrument = &instrument;
    const Platform platform = BenchPlatform(bench);
    Job job;
    job.link.platform = &platform;
    job.link.operation = &job.operation;
    job.link.port_name = bench.instrument_port;
    job.parameter = kCurrentTrack;
    const uint64_t start_ns = bench.now_ns;
    const int result = flytec::TrackLogJob(job);
    if (result != static_cast<int>(fixes)) {
      state.SkipWithError("the flight did not arrive whole");
      break;
    }
    constexpr uint64_t kIdentification_ms = 200 + 1000;  // settling, and the pause after it
    const uint64_t fixed_ms = kIdentification_ms + kFixedPauses_ms + kSilence_ms;
    const double total_ms = static_cast<double>(Elapsed_ms(bench, start_ns) - fixed_ms);
    const double wire_ms = static_cast<double>(bench.sent + bench.received) * 10'000 / 57600;
    efficiency = wire_ms / total_ms;
  }
  state.counters["wire_share"] = efficiency;
}
BENCHMARK(Download)->Arg(3000)->Arg(30000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace skyhaul
