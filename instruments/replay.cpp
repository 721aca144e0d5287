#include "instruments/replay.h"

#include <algorithm>

#include "core/text/printable.h"

namespace skyhaul {

namespace {

constexpr uint64_t kMillisecond_ns = 1'000'000;
constexpr uint64_t kForget_ns = 500 * kMillisecond_ns;
constexpr size_t kLongestHostLine = 1000;  // what is longer matches no more and is given up

bool IsFlowControl(char byte) {
  return kFlowControlBytes.find(byte) != std::string_view::npos;
}

// The turns being made of a file's lines.
struct Building {
  std::vector<ReplayTurn> turns = {ReplayTurn{}};
  bool open = false;         // the last turn's host line may still grow
  uint64_t asked_ms = 0;     // when that line was sent
  uint64_t earlier_ms = 0;   // the length of the jobs before
  uint64_t previous_ms = 0;  // of the line before, in its job
};

// Times of a file begin anew with each job. These go on.
uint64_t RunningTime_ms(Building& building, uint64_t time_ms) {
  if (time_ms < building.previous_ms) building.earlier_ms += building.previous_ms;
  building.previous_ms = time_ms;
  return building.earlier_ms + time_ms;
}

void AddHostBytes(Building& building, const SpokenLine& line, uint64_t now_ms) {
  for (const char byte : line.bytes) {
    // The operating system sends them as it pleases, so they are not waited for.
    if (IsFlowControl(byte)) continue;
    if (!building.open) building.turns.push_back({.line_number = line.line_number});
    building.turns.back().host += byte;
    building.open = byte != '\n';
    building.asked_ms = now_ms;
  }
}

std::string Quoted(std::string_view bytes) {
  while (bytes.ends_with('\n') || bytes.ends_with('\r')) bytes.remove_suffix(1);
  return '"' + PrintableText(bytes) + '"';
}

void Tell(const Replay& replay, const std::string& text, uint64_t now_ns) {
  if (replay.log != nullptr) replay.log(replay.log_context, text, now_ns);
}

void Answer(Replay& replay, Wire& wire, const ReplayTurn& turn, uint64_t now_ns) {
  for (const ReplayAnswer& answer : turn.answers) {
    Send(wire, answer.bytes, now_ns + (replay.at_once ? 0 : answer.after_ns));
  }
}

// True while the host may be sending the line that is waited for.
bool MayBeNext(const Replay& replay) {
  return replay.next < replay.turns.size() &&
         replay.turns[replay.next].host.starts_with(replay.heard);
}

void TakeTurn(Replay& replay, Wire& wire, size_t place, uint64_t now_ns) {
  const ReplayTurn& turn = replay.turns[place];
  if (place > replay.next) {
    Tell(replay,
         "the host sent " + Quoted(replay.heard) + ", so " + std::to_string(place - replay.next) +
             " of its lines are left out, from line " +
             std::to_string(replay.turns[replay.next].line_number) + " of the file to " +
             std::to_string(turn.line_number),
         now_ns);
  }
  replay.next = place + 1;
  replay.heard.clear();
  Answer(replay, wire, turn, now_ns);
}

void StaySilent(Replay& replay, uint64_t now_ns) {
  std::string text = "no answer to " + Quoted(replay.heard) + ": the file ";
  if (replay.next == replay.turns.size()) {
    text += "has no further line of the host's";
  } else {
    const ReplayTurn& turn = replay.turns[replay.next];
    text += "has " + Quoted(turn.host) + " on line " + std::to_string(turn.line_number);
  }
  Tell(replay, text, now_ns);
  replay.heard.clear();
}

void Receive(void* state, Wire& wire, uint8_t received, uint64_t now_ns) {
  auto& replay = *static_cast<Replay*>(state);
  const char byte = static_cast<char>(received);
  if (IsFlowControl(byte)) {
    wire.held = byte == kFlowControlBytes[1];
    return;
  }
  // Else the rest of an interrupted line would spoil the next one.
  if (!replay.heard.empty() && now_ns > replay.heard_ns + kForget_ns) StaySilent(replay, now_ns);
  replay.heard += byte;
  replay.heard_ns = now_ns;
  const auto begin = replay.turns.begin() + static_cast<ptrdiff_t>(replay.next);
  const auto found = std::find_if(
      begin, replay.turns.end(), [&](const ReplayTurn& turn) { return turn.host == replay.heard; });
  // A binary word that stands further on may be the beginning of the one that is waited for.
  if (found != replay.turns.end() && (found == begin || !MayBeNext(replay))) {
    TakeTurn(replay, wire, static_cast<size_t>(found - replay.turns.begin()), now_ns);
    return;
  }
  if (byte == '\n' || replay.heard.size() > kLongestHostLine) StaySilent(replay, now_ns);
}

}  // namespace

std::vector<ReplayTurn> TurnsOf(const std::vector<SpokenLine>& lines) {
  Building building;
  for (const SpokenLine& line : lines) {
    const uint64_t now_ms = RunningTime_ms(building, line.time_ms);
    if (line.speaker == Speaker::kHost) {
      AddHostBytes(building, line, now_ms);
      continue;
    }
    building.open = false;
    building.turns.back().answers.push_back(
        {.after_ns = (now_ms - building.asked_ms) * kMillisecond_ns, .bytes = line.bytes});
  }
  return building.turns;
}

SimulatedInstrument MakeReplayInstrument(Replay& replay) {
  SimulatedInstrument instrument = {.wire = {}, .state = &replay, .receive = Receive};
  // The file's own times hold; bytes of one line came without a pause.
  instrument.wire.baud = 0;
  // What came unasked in the file comes so again.
  if (!replay.turns.empty() && replay.turns.front().host.empty()) {
    Answer(replay, instrument.wire, replay.turns.front(), 0);
    replay.next = 1;
  }
  return instrument;
}

}  // namespace skyhaul
