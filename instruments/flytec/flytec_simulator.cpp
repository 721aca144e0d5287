#include "instruments/flytec/flytec_simulator.h"

#include <algorithm>
#include <cstdio>

#include "core/time_scale.h"
#include "formats/igc/read_igc.h"

namespace skyhaul {

namespace {

constexpr uint8_t kXon = 0x11;
constexpr uint8_t kXoff = 0x13;
constexpr size_t kLongestSentence = 120;

uint8_t XorOf(std::string_view text) {
  uint8_t sum = 0;
  for (const char c : text) sum = static_cast<uint8_t>(sum ^ static_cast<uint8_t>(c));
  return sum;
}

std::string HexByte(uint8_t byte) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  return {kDigits[byte >> 4], kDigits[byte & 15]};
}

// "$", the body, its checksum, CR LF.
std::string Sentence(const std::string& body) {
  return "$" + body + "*" + HexByte(XorOf(body)) + "\r\n";
}

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

// The number that so many digits at the start of a text make, or -1.
int LeadingNumber(std::string_view text, size_t digits) {
  if (text.size() < digits) return -1;
  int number = 0;
  for (size_t i = 0; i < digits; ++i) {
    if (!IsDigit(text[i])) return -1;
    number = number * 10 + (text[i] - '0');
  }
  return number;
}

// --- Answers -------------------------------------------------------------------------------------

// What an answer is made of: pieces that leave one after the other. No piece at all is an answer
// too.
using Answer = std::vector<std::string>;

bool AnswerProductData(const FlytecSimulator& simulator, std::string_view, Answer& answer) {
  std::string pilot = simulator.pilot_name;
  pilot.resize(kFlytecPilotWidth, ' ');
  answer.push_back(Sentence("PBRSNP," + simulator.device_name + "," + pilot + "," +
                            simulator.serial + "," + simulator.software));
  return true;
}

std::string ListLine(size_t total, size_t index, const FlytecFlight& flight) {
  const CalendarTime start = CalendarFromTime(flight.start_time);
  char line[80];
  (void)std::snprintf(
      line, sizeof line, "PBRTL,%02zu,%02zu,%02d.%02d.%02d,%02d:%02d:%02d,%02u:%02u:%02u", total,
      index, start.day, start.month, start.year % 100, start.hour, start.minute, start.second,
      flight.duration_s / 3600, flight.duration_s / 60 % 60, flight.duration_s % 60);
  return Sentence(line);
}

bool AnswerFlightList(const FlytecSimulator& simulator, std::string_view, Answer& answer) {
  for (size_t i = 0; i < simulator.flights.size(); ++i) {
    answer.push_back(ListLine(simulator.flights.size(), i, simulator.flights[i]));
  }
  return true;
}

bool AnswerWithFlight(const FlytecSimulator& simulator, size_t index, Answer& answer) {
  if (index >= simulator.flights.size()) return false;
  answer.push_back(simulator.flights[index].igc_text);
  return true;
}

bool AnswerListedFlight(const FlytecSimulator& simulator, std::string_view index, Answer& answer) {
  const int number = index.size() == 2 ? LeadingNumber(index, 2) : -1;
  return number >= 0 && AnswerWithFlight(simulator, static_cast<size_t>(number), answer);
}

bool AnswerSelectedFlight(const FlytecSimulator& simulator, std::string_view, Answer& answer) {
  return AnswerWithFlight(simulator, simulator.selected_flight, answer);
}

// What the instrument understands. An answer function gets what follows the request's first comma
// and returns false when there is nothing to answer.
struct Request {
  std::string_view start;
  bool has_field;
  bool (*answer)(const FlytecSimulator& simulator, std::string_view field, Answer& answer);
};

constexpr Request kRequests[] = {
    {.start = "PBRSNP,", .has_field = false, .answer = AnswerProductData},
    {.start = "PBRTL,", .has_field = false, .answer = AnswerFlightList},
    {.start = "PBRTR,", .has_field = true, .answer = AnswerListedFlight},
    {.start = "PBRIGC,", .has_field = false, .answer = AnswerSelectedFlight},
};

bool AnswerTo(const FlytecSimulator& simulator, std::string_view body, Answer& answer) {
  for (const Request& request : kRequests) {
    if (!body.starts_with(request.start)) continue;
    const std::string_view field = body.substr(request.start.size());
    return field.empty() != request.has_field && request.answer(simulator, field, answer);
  }
  return false;
}

// --- Sentences -----------------------------------------------------------------------------------

// The part of a sentence between '$' and '*', or an empty text when the sentence is not sound. A
// request that ends in a comma may come without a checksum.
std::string_view SoundBody(std::string_view sentence) {
  sentence.remove_prefix(1);
  const size_t star = sentence.rfind('*');
  if (star == std::string_view::npos) return sentence.ends_with(',') ? sentence : "";
  const std::string_view body = sentence.substr(0, star);
  return sentence.substr(star + 1) == HexByte(XorOf(body)) ? body : "";
}

void Tell(const FlytecSimulator& simulator, const char* what, std::string_view sentence,
          uint64_t now_ns) {
  if (simulator.log == nullptr) return;
  simulator.log(simulator.log_context, what + std::string(sentence), now_ns);
}

void HandleSentence(const FlytecSimulator& simulator, Wire& wire, std::string_view sentence,
                    uint64_t now_ns) {
  const std::string_view body = SoundBody(sentence);
  if (body.empty()) return Tell(simulator, "no sound checksum: ", sentence, now_ns);
  Answer answer;
  if (!AnswerTo(simulator, body, answer)) {
    return Tell(simulator, "nothing to answer: ", sentence, now_ns);
  }
  Tell(simulator, "answering ", sentence, now_ns);
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
  FlytecSimulator& simulator = *static_cast<FlytecSimulator*>(state);
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

// --- Flights from files --------------------------------------------------------------------------

// Midnight of the day that an HFDTE line names, or 0.
uint32_t DayOf(std::string_view line) {
  const size_t at = line.find_first_of("0123456789");
  if (at == std::string_view::npos) return 0;
  const int day = LeadingNumber(line.substr(at), 2);
  const int month = LeadingNumber(line.substr(std::min(at + 2, line.size())), 2);
  const int year = LeadingNumber(line.substr(std::min(at + 4, line.size())), 2);
  if (day < 1 || day > 31 || month < 1 || month > 12 || year < 0) return 0;
  return TimeFromCalendar({.year = 2000 + year, .month = month, .day = day});
}

// Seconds after midnight of a B line, or -1.
int TimeOfDay(std::string_view line) {
  if (line.size() < 7) return -1;
  const int hour = LeadingNumber(line.substr(1), 2);
  const int minute = LeadingNumber(line.substr(3), 2);
  const int second = LeadingNumber(line.substr(5), 2);
  if (hour < 0 || minute < 0 || second < 0) return -1;
  return (hour * 60 + minute) * 60 + second;
}

FlytecFlight ScanTimes(std::string_view text) {
  uint32_t day = 0;
  int first = -1;
  int last = -1;
  while (!text.empty()) {
    const size_t end = std::min(text.find('\n'), text.size());
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    if (line.starts_with("HFDTE") && day == 0) day = DayOf(line);
    const int time_of_day = line.starts_with('B') ? TimeOfDay(line) : -1;
    if (time_of_day < 0) continue;
    if (first < 0) first = time_of_day;
    last = time_of_day;
  }
  if (first < 0) return {.start_time = day};
  if (last < first) last += static_cast<int>(kSecondsPerDay);
  return {.start_time = day + static_cast<uint32_t>(first),
          .duration_s = static_cast<uint32_t>(last - first)};
}

}  // namespace

SimulatedInstrument MakeFlytecInstrument(FlytecSimulator& simulator, uint32_t baud) {
  SimulatedInstrument instrument;
  instrument.wire.baud = baud;
  instrument.state = &simulator;
  instrument.receive = Receive;
  return instrument;
}

FlytecFlight FlightFromIgc(const std::string& igc_text) {
  std::vector<TrackPoint> points;
  std::string message;
  FlytecFlight flight;
  if (ParseIgc(igc_text, points, message) > 0) {
    flight.start_time = points.front().time;
    flight.duration_s = points.back().time - points.front().time;
  } else {
    flight = ScanTimes(igc_text);
  }
  flight.igc_text = igc_text;
  return flight;
}

void SortNewestFirst(std::vector<FlytecFlight>& flights) {
  std::stable_sort(flights.begin(), flights.end(),
                   [](const auto& a, const auto& b) { return a.start_time > b.start_time; });
}

}  // namespace skyhaul
