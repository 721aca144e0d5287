#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "instruments/flytec/flytec_simulator.h"
#include "instruments/flytec/instrument_text.h"

namespace skyhaul::flytec_simulator {

inline void Say(SimulatedInstrument& instrument, std::string_view bytes, uint64_t now_ns = 0) {
  for (const char c : bytes) {
    instrument.receive(instrument.state, instrument.wire, static_cast<uint8_t>(c), now_ns);
  }
}

inline std::string Hear(SimulatedInstrument& instrument, uint64_t now_ns = kNever_ns - 1) {
  std::string heard(4096, 0);
  heard.resize(
      TakeArrived(instrument.wire, now_ns, reinterpret_cast<uint8_t*>(heard.data()), heard.size()));
  return heard;
}

// All that a simulator answers.
inline std::string AnswerTo(Simulator& simulator, std::string_view request) {
  SimulatedInstrument instrument = MakeInstrument(simulator, 57600);
  Say(instrument, request);
  return Hear(instrument);
}

// What the simulator answers to one body after the other.
inline std::string Answers(Simulator& simulator, const std::vector<std::string>& bodies) {
  std::string request;
  for (const std::string& body : bodies) request += InstrumentSentence(body);
  return AnswerTo(simulator, request);
}

}  // namespace skyhaul::flytec_simulator
