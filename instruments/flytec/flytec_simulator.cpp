#include "instruments/flytec/flytec_simulator.h"

#include <algorithm>

#include "instruments/flytec/instrument_text.h"
#include "instruments/flytec/requests.h"

namespace skyhaul::flytec_simulator {

namespace {

constexpr uint8_t kXon = 0x11;
constexpr uint8_t kXoff = 0x13;
constexpr size_t kLongestSentence = 120;

void Log(const Simulator& simulator, const char* what, std::string_view sentence, uint64_t now_ns) {
  if (simulator.log == nullptr) return;
  simulator.log(simulator.log_context, what + std::string(sentence), now_ns);
}

void HandleSentence(Simulator& simulator, Wire& wire, std::string_view sentence, uint64_t now_ns) {
  const std::string_view body = SoundBody(sentence);
  if (body.empty()) return Log(simulator, "no sound checksum: ", sentence, now_ns);
  Answer answer;
  if (!AnswerTo(simulator, body, answer)) {
    return Log(simulator, "nothing to answer: ", sentence, now_ns);
  }
  Log(simulator, "answering ", sentence, now_ns);
  uint64_t when_ns = now_ns + simulator.xoff_delay_ns;
  Send(wire, std::string_view("\x13"), when_ns);
  when_ns += simulator.thinking_ns;
  for (const std::string& piece : answer) {
    Send(wire, piece, when_ns);
    when_ns += simulator.line_gap_ns;
  }
  Send(wire, std::string_view("\x11"), when_ns);
}

void Receive(void* state, Wire& wire, uint8_t byte, uint64_t now_ns) {
  Simulator& simulator = *static_cast<Simulator*>(state);
  std::string& sentence = simulator.sentence;
  if (byte == kXoff) {
    wire.held = true;
  } else if (byte == kXon) {
    // What was held starts to leave now, not when it would have left.
    if (wire.held) wire.free_at_ns = std::max(wire.free_at_ns, now_ns);
    wire.held = false;
  } else if (byte == '$') {
    sentence = "$";
  } else if (byte == '\n') {
    if (sentence.ends_with('\r')) sentence.pop_back();
    if (!sentence.empty()) HandleSentence(simulator, wire, sentence, now_ns);
    sentence.clear();
  } else if (sentence.size() >= kLongestSentence) {
    sentence.clear();
  } else if (!sentence.empty()) {
    sentence += static_cast<char>(byte);
  }
}

}  // namespace

SimulatedInstrument MakeInstrument(Simulator& simulator, uint32_t baud) {
  SimulatedInstrument instrument;
  instrument.wire.baud = baud;
  instrument.state = &simulator;
  instrument.receive = Receive;
  return instrument;
}

}  // namespace skyhaul::flytec_simulator
