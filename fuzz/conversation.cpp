// Any bytes as a file of a conversation: what is read is written and read again the same, and what
// is anonymous keeps its form and has nothing left to blank.

#include "transport/conversation_log.h"

#include "fuzz/frame.h"
#include "instruments/anonymise.h"
#include "instruments/replay.h"

namespace skyhaul {

void Fuzz(std::string_view text) {
  std::vector<SpokenLine> lines;
  std::string message;
  RequireAllOrNothing(ReadConversation(text, lines, message), lines.size(), message);
  if (lines.empty()) return;
  std::string written;
  for (SpokenLine& line : lines) {
    written += FormatSpokenLine(line);
    line.line_number = static_cast<size_t>(&line - lines.data()) + 1;
  }
  std::vector<SpokenLine> again;
  Require(ReadConversation(written, again, message) >= 0 && again == lines);

  std::string anonymous;
  std::string twice;
  Require((AnonymiseConversation(written, anonymous, message) >= 0));
  Require(anonymous.size() == written.size());
  Require(AnonymiseConversation(anonymous, twice, message) == 0);

  Replay replay{.turns = TurnsOf(lines), .at_once = true};
  SimulatedInstrument instrument = MakeReplayInstrument(replay);
  for (const char byte : text) {
    instrument.receive(instrument.state, instrument.wire, static_cast<uint8_t>(byte), 0);
  }
}

}  // namespace skyhaul
