// How fast flights are read, decoded and written. LineWalk is the plain search for line ends over
// the same text in the same run: the other times are judged as multiples of it, which carries over
// from one machine to another better than megabytes a second do.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/time_scale.h"
#include "formats/igc/decode_line.h"
#include "formats/igc/read_igc.h"
#include "formats/igc/write_igc.h"

namespace {

constexpr int kFixes = 100'000;

// A day of circling upwards and gliding on, one fix a second.
std::vector<skyhaul::TrackPoint> MakeFlight() {
  const uint32_t start = skyhaul::TimeFromCalendar({.year = 2026, .month = 5, .day = 14});
  std::vector<skyhaul::TrackPoint> points;
  for (int i = 0; i < kFixes; ++i) {
    const double angle = i * 0.25;
    points.push_back({.segment_start = i == 0 ? 1U : 0U,
                      .time = start + static_cast<uint32_t>(i),
                      .lat = 560'000'000 + i * 300 + static_cast<int32_t>(8000 * std::sin(angle)),
                      .lon = 130'000'000 - i * 200 + static_cast<int32_t>(9000 * std::cos(angle)),
                      .gps_alt_dm = 8000 + i % 12'000,
                      .pressure_alt = 790 + i % 1200,
                      .extra = static_cast<float>(i % 300)});
  }
  return points;
}

std::string MakeText() {
  std::string text;
  skyhaul::igc::Write(MakeFlight(), {.pilot = "Pilot"}, {.serial = "000"}, text);
  return text;
}

std::string_view NextLine(std::string_view& text) {
  const size_t line_end = std::min(text.find('\n'), text.size());
  const std::string_view line = text.substr(0, line_end);
  text.remove_prefix(std::min(line_end + 1, text.size()));
  return line;
}

void CountWork(benchmark::State& state, size_t text_size) {
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(text_size));
  state.SetItemsProcessed(state.iterations() * kFixes);
}

void LineWalk(benchmark::State& state) {
  const std::string text = MakeText();
  while (state.KeepRunning()) {
    std::string_view rest = text;
    size_t lines = 0;
    while (!rest.empty()) lines += NextLine(rest).size();
    benchmark::DoNotOptimize(lines);
  }
  CountWork(state, text.size());
}
BENCHMARK(LineWalk);

void ParseIgc(benchmark::State& state) {
  const std::string text = MakeText();
  while (state.KeepRunning()) {
    std::vector<skyhaul::TrackPoint> points;
    std::string message;
    if (skyhaul::igc::Read(text, points, message) != kFixes) state.SkipWithError(message.c_str());
    benchmark::DoNotOptimize(points.data());
  }
  CountWork(state, text.size());
}
BENCHMARK(ParseIgc);

void DecodeInstrumentIgcLine(benchmark::State& state) {
  const std::string text = MakeText();
  while (state.KeepRunning()) {
    skyhaul::igc::Decoder decoder;
    std::string_view rest = text;
    while (!rest.empty()) {
      const std::string_view line = NextLine(rest);
      skyhaul::igc::DecodeLine(decoder, line.substr(0, line.find('\r')));
    }
    if (decoder.points.size() != kFixes) state.SkipWithError("fixes are missing");
  }
  CountWork(state, text.size());
}
BENCHMARK(DecodeInstrumentIgcLine);

void WriteIgc(benchmark::State& state) {
  const std::vector<skyhaul::TrackPoint> points = MakeFlight();
  const bool sign = state.range(0) != 0;
  std::string text;
  while (state.KeepRunning()) {
    if (skyhaul::igc::Write(points, {}, {.sign = sign, .may_be_signed = true}, text) < 0) {
      state.SkipWithError("nothing written");
    }
    benchmark::DoNotOptimize(text.data());
  }
  CountWork(state, text.size());
}
BENCHMARK(WriteIgc)->ArgName("signed")->Arg(0)->Arg(1);

}  // namespace
