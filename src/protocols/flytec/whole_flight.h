#pragma once

#include <cstdint>
#include <string>

#include "core/shell.h"
#include "protocols/flytec/track_receiver.h"

namespace skyhaul::flytec {

// What is known of a flight when its transfer has ended in silence.
struct Transfer {
  const TrackReceiver* receiver = nullptr;
  const TrackListEntry* listed = nullptr;  // null: the instrument has no list, or did not list it
  uint32_t losses = 0;                     // bytes that the system has counted as lost
  bool port_failed = false;                // not silence but a failure has ended it
};

// Says what is missing of a flight, such as "00:03:35 of 00:10:00 received, line 218 is cut"; empty
// when nothing that is known speaks against its being whole. It is whole when it begins with an A
// record, ends with a complete line, has a security record, has no line that cannot be read, starts
// when the list says (give or take five minutes and the whole quarter hours of a local time), is no
// more than a minute shorter than the list says, and no byte was counted as lost. A flight that is
// longer than listed is none of our business: lists count pauses in different ways.
std::string WhatIsMissing(const Transfer& transfer);

}  // namespace skyhaul::flytec
