#include "instruments/flytec/flytec_simulator.h"

#include <algorithm>
#include <limits>
#include <utility>

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

// --- Manners -------------------------------------------------------------------------------------

// Whether the manners that are not for every answer are for the one to this request.
bool Concerned(Simulator& simulator, std::string_view body) {
  const Manners& manners = simulator.manners;
  if (!body.starts_with(manners.request)) return false;
  ++simulator.concerned;
  return manners.nth == 0 || manners.nth == simulator.concerned;
}

// What of the manners is for the answer to this request.
Manners MannersFor(Simulator& simulator, std::string_view body) {
  if (!Concerned(simulator, body)) return {};
  Manners manners = simulator.manners;
  if (!manners.request.empty()) return manners;
  // A number of bytes or lines that is meant for flights or their list would hit everything else.
  constexpr size_t kEvery = std::numeric_limits<size_t>::max();
  if (!body.starts_with("PBRTL,")) manners.lines = kEvery;
  if (!body.starts_with("PBRTR,") && !body.starts_with("PBRIGC,")) {
    manners.stall_at = manners.cut_at = kNowhere;
  }
  return manners;
}

// The place in an answer of that length; negative ones count from its end.
size_t PlaceIn(size_t length, int64_t place) {
  const auto end = static_cast<int64_t>(length);
  return static_cast<size_t>(std::clamp<int64_t>(place < 0 ? place + end : place, 0, end));
}

// Puts the answer on the wire from when_ns on, as far as the manners let it. Returns when it is
// done, or kNever_ns for an answer that stalls for ever.
uint64_t SendPieces(Wire& wire, Answer answer, const Manners& manners, uint64_t when_ns,
                    uint64_t line_gap_ns) {
  if (answer.size() > manners.lines) answer.resize(manners.lines);
  size_t length = 0;
  for (const std::string& piece : answer) length += piece.size();
  const size_t cut = PlaceIn(length, manners.cut_at);
  const size_t stall = PlaceIn(length, manners.stall_at);
  size_t start = 0;  // of the piece in the answer
  for (const std::string& piece : answer) {
    std::string_view rest = std::string_view(piece).substr(0, cut - std::min(cut, start));
    if (stall >= start && stall < start + rest.size()) {
      Send(wire, rest.substr(0, stall - start), when_ns);
      if (manners.stall_ns == kNever_ns) return kNever_ns;
      // The silence begins when what was sent before it has left.
      when_ns = std::max(when_ns, LastArrival_ns(wire)) + manners.stall_ns;
      rest.remove_prefix(stall - start);
    }
    Send(wire, rest, when_ns);
    start += piece.size();
    when_ns += line_gap_ns;
  }
  return when_ns;
}

bool Sending(const Wire& wire, uint64_t now_ns) {
  // A host that does not read has bytes queued that left long ago.
  return !wire.chunks.empty() && (wire.held || now_ns < LastArrival_ns(wire));
}

bool Busy(const Simulator& simulator, const Wire& wire, uint64_t now_ns) {
  return now_ns >= simulator.busy_from_ns && Sending(wire, now_ns);
}

// --- Bytes ---------------------------------------------------------------------------------------

void HandleSentence(Simulator& simulator, Wire& wire, std::string_view sentence, uint64_t now_ns) {
  const std::string_view body = SoundBody(sentence);
  if (body.empty()) return Log(simulator, "no sound checksum: ", sentence, now_ns);
  Answer answer;
  if (!AnswerTo(simulator, body, answer)) {
    return Log(simulator, "nothing to answer: ", sentence, now_ns);
  }
  const Manners manners = MannersFor(simulator, body);
  if (manners.silent) return Log(simulator, "keeping silent: ", sentence, now_ns);
  Log(simulator, "answering ", sentence, now_ns);
  const uint64_t xoff_ns = now_ns + manners.late_ns + simulator.xoff_delay_ns;
  // Sentences that came before the first one's XOFF are answered one after the other.
  if (!Sending(wire, now_ns)) simulator.busy_from_ns = xoff_ns;
  Send(wire, std::string_view("\x13"), xoff_ns);
  const uint64_t done_ns = SendPieces(wire, std::move(answer), manners,
                                      xoff_ns + simulator.thinking_ns, simulator.line_gap_ns);
  if (done_ns == kNever_ns || manners.lose_xon) return;
  Send(wire, std::string_view("\x11"), done_ns);
}

void TakeXon(Wire& wire, uint64_t now_ns) {
  // What was held starts to leave now, not when it would have left.
  if (wire.held) wire.free_at_ns = std::max(wire.free_at_ns, now_ns);
  wire.held = false;
}

void Receive(void* state, Wire& wire, uint8_t byte, uint64_t now_ns) {
  Simulator& simulator = *static_cast<Simulator*>(state);
  std::string& sentence = simulator.sentence;
  if (byte == kXoff) {
    wire.held = true;
  } else if (byte == kXon) {
    TakeXon(wire, now_ns);
  } else if (simulator.manners.deaf_while_busy && Busy(simulator, wire, now_ns)) {
    if (byte == '$') Log(simulator, "busy, not heard: ", "$", now_ns);
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

void Closed(void* state, Wire& wire) {
  if (!static_cast<Simulator*>(state)->manners.keep_sending) ForgetAnswers(wire);
}

}  // namespace

SimulatedInstrument MakeInstrument(Simulator& simulator, uint32_t baud) {
  SimulatedInstrument instrument;
  instrument.wire.baud = baud;
  instrument.state = &simulator;
  instrument.receive = Receive;
  instrument.closed = Closed;
  return instrument;
}

}  // namespace skyhaul::flytec_simulator
