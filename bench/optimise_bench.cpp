// How long the distances of a flight take, by the shape of the flight: the search of the program,
// the plain loops that its tests hold it against (once each), and how many times slower these are.
// All tracks have 30 000 fixes, and all tasks are asked for. ExactSearch is the proof on every fix
// of the closed flight.

#include <benchmark/benchmark.h>

#include <chrono>
#include <vector>

#include "analysis/optimise.h"
#include "analysis/optimise_exact.h"
#include "instruments/flight_generator.h"
#include "tests/analysis/reference_optimiser.h"
#include "tests/analysis/track_shapes.h"

namespace skyhaul {
namespace {

constexpr size_t kFixes = 30'000;
constexpr OptimiseSettings kSettings = {.gap_m = 3000};

double Now_ms() {
  return std::chrono::duration<double, std::milli>(
             std::chrono::steady_clock::now().time_since_epoch())
      .count();
}

void Optimise(benchmark::State& state, const std::vector<TrackPoint>& points) {
  OptimiseResult result;
  double fast_ms = 0;
  while (state.KeepRunning()) {
    const double start_ms = Now_ms();
    if (OptimiseTrack(points, kSettings, result, nullptr) < 0) state.SkipWithError("no memory");
    fast_ms += Now_ms() - start_ms;
  }
  fast_ms /= static_cast<double>(state.iterations());

  const double start_ms = Now_ms();
  const OptimiseResult reference = ReferenceOptimise(points, kSettings);
  const double exhaustive_ms = Now_ms() - start_ms;
  for (size_t task = 0; task < kOptimiseTasks; ++task) {
    if (result.tasks[task].indices == reference.tasks[task].indices) continue;
    state.SkipWithError("the two searches differ");
  }
  state.counters["fast_ms"] = fast_ms;
  state.counters["exhaustive_ms"] = exhaustive_ms;
  state.counters["ratio"] = exhaustive_ms / fast_ms;
  state.counters["memory_MB"] = static_cast<double>(result.memory_bytes) / 1e6;
}

void ClosedFlight(benchmark::State& state) {
  Optimise(state, GenerateFlightOfLength({.seed = 5}, kFixes).points);
}

void ExactSearch(benchmark::State& state) {
  const std::vector<TrackPoint> points = GenerateFlightOfLength({.seed = 5}, kFixes).points;
  OptimiseResult fast;
  OptimiseResult exact;
  while (state.KeepRunning()) {
    if (OptimiseTrackExact(points, kSettings, 0, exact, nullptr) < 0) state.SkipWithError("failed");
  }
  if (OptimiseTrack(points, kSettings, fast, nullptr) < 0) state.SkipWithError("no memory");
  state.counters["memory_MB"] = static_cast<double>(exact.memory_bytes) / 1e6;
  const double fast_m = ResultOf(fast, OptimiseTask::kFaiTriangle).score_m;
  state.counters["gain_m"] = ResultOf(exact, OptimiseTask::kFaiTriangle).score_m - fast_m;
}

void Shape(benchmark::State& state, TrackShape shape) {
  Optimise(state, MakeTrack({.shape = shape, .points = kFixes}));
}

// One round of iterations, so that the plain loops run once.
#define SKYHAUL_SHAPE(name) \
  BENCHMARK_CAPTURE(Shape, name, TrackShape::name)->Iterations(20)->Unit(benchmark::kMillisecond)

BENCHMARK(ClosedFlight)->Iterations(20)->Unit(benchmark::kMillisecond);
BENCHMARK(ExactSearch)->Iterations(20)->Unit(benchmark::kMillisecond);
SKYHAUL_SHAPE(kTriangle);
SKYHAUL_SHAPE(kCircles);
SKYHAUL_SHAPE(kOutAndReturn);
SKYHAUL_SHAPE(kRidge);
SKYHAUL_SHAPE(kSpiral);
SKYHAUL_SHAPE(kRandomWalk);
SKYHAUL_SHAPE(kBackToStart);
SKYHAUL_SHAPE(kFewPlaces);

}  // namespace
}  // namespace skyhaul
