#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "instruments/instrument.h"
#include "transport/conversation_log.h"

namespace skyhaul {

// What the instrument says of a turn, and how long after the host's line in the file.
struct ReplayAnswer {
  uint64_t after_ns = 0;
  std::string bytes;
};

// One line of the host's (bytes up to LF, or up to the instrument's next word) and what the
// instrument says until the host's next one.
struct ReplayTurn {
  std::string host;  // without XON and XOFF; empty: what the instrument says before any line
  std::vector<ReplayAnswer> answers;
  size_t line_number = 0;  // in the file
};

// An instrument that says again what one has said in a recorded conversation. It waits for the
// host's next line of the file. When the host sends another one that stands further on in the file,
// it goes on there; to anything else it is silent. Both are told. Half a line that the host does
// not go on with for half a second is forgotten.
struct Replay {
  std::vector<ReplayTurn> turns;
  bool at_once = false;  // without the pauses of the file

  // Told what the host does otherwise than in the file; may be null. The text is one line.
  void (*log)(void* context, std::string_view text, uint64_t now_ns) = nullptr;
  void* log_context = nullptr;

  size_t next = 0;  // the turn that is waited for
  std::string heard = {};
  uint64_t heard_ns = 0;  // when the last byte of it came
};

std::vector<ReplayTurn> TurnsOf(const std::vector<SpokenLine>& lines);

// The instrument on a wire. The replay must outlive it and stay where it is.
SimulatedInstrument MakeReplayInstrument(Replay& replay);

}  // namespace skyhaul
