#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "core/shell.h"
#include "protocols/flytec/track_receiver.h"

namespace skyhaul::flytec {

// What is known of a flight when its transfer has ended in silence.
struct Transfer {
  const TrackReceiver* receiver = nullptr;
  const TrackListEntry* listed = nullptr;  // null: the instrument has no list, or did not list it
  std::span<const TrackListEntry> list;    // of all its flights
  uint32_t losses = 0;                     // bytes that the system has counted as lost
  bool port_failed = false;                // not silence but a failure has ended it
};

// What speaks against a flight's being whole.
struct Verdict {
  std::string missing;        // "00:03:35 of 00:10:00 received, line 218 is cut"; empty: nothing
  bool only_shorter = false;  // nothing but the length
};

// Judges a flight. It is whole when it begins with its only A record, ends with a complete line,
// has a security record behind its fixes, has no line that cannot be read, starts when the list
// says (give or take five minutes), is no more than a minute shorter than the list says, and no
// byte was counted as lost. A start that is off by whole quarter hours is that of an instrument
// which lists its local time, unless another flight of the list starts then. A flight that is
// longer than listed is none of our business: lists count pauses in different ways.
Verdict Judge(const Transfer& transfer);

}  // namespace skyhaul::flytec
