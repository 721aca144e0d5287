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
};

}  // namespace skyhaul
