#pragma once

#include <cstdint>

#include "instruments/wire.h"

namespace skyhaul {

// A simulated instrument as its host sees it: a state machine that takes the bytes it is sent, and
// a wire on which its answers wait for their time. It has no clock, no thread and no port of its
// own, so that the same simulator runs in virtual time and behind a real terminal.
struct SimulatedInstrument {
  Wire wire;
  void* state = nullptr;  // the family's record; owned by whoever made the instrument

  // Takes one byte at a time. Bytes that steer the flow (XON, XOFF) are the instrument's to obey.
  void (*receive)(void* state, Wire& wire, uint8_t byte, uint64_t now_ns) = nullptr;

  // The program has closed its port. Null: as ForgetAnswers().
  void (*closed)(void* state, Wire& wire) = nullptr;
};

// The next program finds the wire as new: nothing on its way, nothing stopped.
inline void ForgetAnswers(Wire& wire) {
  wire.chunks.clear();
  wire.held = false;
}

// For the host, when the program has closed its port. What is still on the wire then goes on
// leaving at its own times, and is lost until a port is open again.
inline void TellClosed(SimulatedInstrument& instrument) {
  if (instrument.closed == nullptr) return ForgetAnswers(instrument.wire);
  instrument.closed(instrument.state, instrument.wire);
}

}  // namespace skyhaul
