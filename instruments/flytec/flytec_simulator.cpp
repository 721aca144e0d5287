#include "instruments/flytec/flytec_simulator.h"

#include <algorithm>

#include "instruments/flytec/instrument_text.h"

namespace skyhaul::flytec_simulator {

namespace {

constexpr uint8_t kXon = 0x11;
constexpr uint8_t kXoff = 0x13;
constexpr size_t kLongestSentence = 120;

// --- Answers -------------------------------------------------------------------------------------

// What an answer is made of: pieces that leave one after the other. No piece at all is an answer
// too.
using Answer = std::vector<std::string>;

bool AnswerProductData(Simulator& simulator, std::string_view, Answer& answer) {
  std::string pilot = simulator.pilot_name;
  pilot.resize(kPilotWidth, ' ');
  answer.push_back(InstrumentSentence("PBRSNP," + simulator.device_name + "," + pilot + "," +
                                      simulator.serial + "," + simulator.software));
  return true;
}

bool AnswerFlightList(Simulator& simulator, std::string_view, Answer& answer) {
  for (size_t i = 0; i < simulator.flights.size(); ++i) {
    answer.push_back(
        InstrumentSentence(FlightListBody(simulator.flights.size(), i, simulator.flights[i])));
  }
  return true;
}

bool AnswerWithFlight(Simulator& simulator, size_t index, Answer& answer) {
  if (index >= simulator.flights.size()) return false;
  answer.push_back(simulator.flights[index].igc_text);
  return true;
}

bool AnswerListedFlight(Simulator& simulator, std::string_view index, Answer& answer) {
  const int number = index.size() == 2 ? LeadingNumber(index, 2) : -1;
  return number >= 0 && AnswerWithFlight(simulator, static_cast<size_t>(number), answer);
}

bool AnswerSelectedFlight(Simulator& simulator, std::string_view, Answer& answer) {
  return AnswerWithFlight(simulator, simulator.selected_flight, answer);
}

bool AnswerWaypointList(Simulator& simulator, std::string_view, Answer& answer) {
  for (const StoredWaypoint& waypoint : simulator.waypoints) {
    answer.push_back(InstrumentSentence(WaypointListBody(waypoint)));
  }
  return true;
}

// A waypoint that is refused looks like one that was taken: the upload has no answer that could
// tell.
bool TakeWaypoint(Simulator& simulator, std::string_view fields, Answer&) {
  StoredWaypoint waypoint;
  if (simulator.refusal == Refusal::kSilent) return false;
  if (!ReadUploadedWaypoint(fields, waypoint)) return false;
  if (simulator.refusal != Refusal::kNone) return true;
  (void)StoreWaypoint(simulator.waypoints, waypoint, simulator.waypoint_room);
  return true;
}

bool AnswerAirspaceList(Simulator& simulator, std::string_view, Answer& answer) {
  for (const std::string& body : AirspaceListBodies(simulator.airspaces)) {
    answer.push_back(InstrumentSentence(body));
  }
  return true;
}

// What becomes of a whole airspace.
char JudgeAirspace(Simulator& simulator) {
  switch (simulator.refusal) {
    case Refusal::kPlausibility:
      return kAirspaceImplausible;
    case Refusal::kMemory:
      return kAirspaceNoMemory;
    case Refusal::kProtected:
      return kAirspaceProtected;
    case Refusal::kSyntax:
      return kAirspaceSyntax;
    case Refusal::kSilent:
    case Refusal::kNone:
      break;
  }
  const AirspaceUpload& upload = simulator.upload;
  if (upload.fault != 0) return upload.fault;
  const bool stored = StoreAirspace(simulator.airspaces, upload.airspace, simulator.airspace_room);
  return stored ? kAirspaceTaken : kAirspaceNoMemory;
}

bool TakeAirspaceLine(Simulator& simulator, std::string_view fields, Answer& answer) {
  if (simulator.refusal == Refusal::kSilent) return false;
  const UploadLine line = TakeUploadLine(simulator.upload, fields);
  if (line != UploadLine::kLast) return line == UploadLine::kMore;
  answer.push_back(InstrumentSentence(std::string("PBRANS,") + JudgeAirspace(simulator)));
  simulator.upload = {};
  return true;
}

// What the instrument understands. An answer function gets what follows the request's first comma
// and returns false when there is nothing to answer.
struct Request {
  std::string_view start;
  bool has_field;
  bool (*answer)(Simulator& simulator, std::string_view field, Answer& answer);
};

constexpr Request kRequests[] = {
    {.start = "PBRSNP,", .has_field = false, .answer = AnswerProductData},
    {.start = "PBRTL,", .has_field = false, .answer = AnswerFlightList},
    {.start = "PBRTR,", .has_field = true, .answer = AnswerListedFlight},
    {.start = "PBRIGC,", .has_field = false, .answer = AnswerSelectedFlight},
    {.start = "PBRWPS,", .has_field = false, .answer = AnswerWaypointList},
    {.start = "PBRWPR,", .has_field = true, .answer = TakeWaypoint},
    {.start = "PBRCTR,", .has_field = false, .answer = AnswerAirspaceList},
    {.start = "PBRCTRW,", .has_field = true, .answer = TakeAirspaceLine},
};

bool AnswerTo(Simulator& simulator, std::string_view body, Answer& answer) {
  for (const Request& request : kRequests) {
    if (!body.starts_with(request.start)) continue;
    const std::string_view field = body.substr(request.start.size());
    return field.empty() != request.has_field && request.answer(simulator, field, answer);
  }
  return false;
}

// --- Sentences -----------------------------------------------------------------------------------

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
