#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "commands/instrument_job.h"
#include "instruments/bench.h"
#include "instruments/flytec/flytec_simulator.h"
#include "protocols/families.h"
#include "tests/support/recording_shell.h"
#include "tests/support/scratch_folder.h"

namespace skyhaul {

using Texts = std::vector<std::string>;

// A flight of 30 fixes, one a second from that hour on, as a recorder writes it.
inline std::string IgcOfHour(const std::string& hour) {
  std::string text = "AFLY123 6030\r\nHFDTE270417\r\nHFPLTPILOT: JIMI HENDRIX\r\n";
  for (int i = 10; i < 40; ++i) {
    const std::string two = std::to_string(i);
    text.append("B").append(hour).append("00").append(two).append("47430").append(two);
    text += "N01121571EA0062000640\r\n";
  }
  return text + "G0123456789ABCDEF\r\n";
}

// A session on a bench with a simulated instrument, without any face.
class SessionBench : public testing::Test {
 protected:
  void SetUp() override {
    Reset();
    platform = BenchPlatform(bench);
  }

  // A fresh instrument and bench; the platform stays.
  void Reset() {
    instrument = flytec_simulator::MakeInstrument(simulator, 57600);
    bench = {};
    bench.instrument = &instrument;
    bench.ports = {{.number = 1, .name = "port1"}};
  }

  // Runs a command to its end on this thread: start(end) calls it.
  template <typename Result, typename Start>
  Result RunToEnd(Start start) {
    std::optional<Result> result;
    start([&](Result ended) { result = std::move(ended); });
    while (!result.has_value()) RunNextRoutine(*recorder.owner);
    return std::move(*result);
  }

  bool Said(const std::string& text) const {
    for (const Texts* texts : {&recorder.messages, &recorder.statuses}) {
      for (const std::string& said : *texts) {
        if (said.find(text) != std::string::npos) return true;
      }
    }
    return false;
  }

  size_t FlightPoints() const {
    return document.lists.flight == nullptr ? 0 : document.lists.flight->points.size();
  }

  ScratchFolder folder;
  flytec_simulator::Simulator simulator;
  SimulatedInstrument instrument;
  Bench bench;
  Platform platform;
  RecordingShell recorder;
  const Shell shell = MakeShell(recorder);
  RunDefaults defaults;
  Document document;
  Session session = {
      .platform = &platform, .shell = &shell, .defaults = &defaults, .document = &document};
  const InstrumentRequest flytec = {.protocol_type = kFlytec, .port = "port1"};
};

}  // namespace skyhaul
