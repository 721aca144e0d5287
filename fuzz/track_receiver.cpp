// A track's bytes as an instrument could send them: what is received is kept to the byte, and a
// fault never leaves a fix that no line held.

#include "protocols/flytec/track_receiver.h"
#include "protocols/flytec/whole_flight.h"

#include "fuzz/frame.h"

namespace skyhaul {

using namespace flytec;

void Fuzz(std::string_view text) {
  TrackReceiver receiver;
  size_t fed = 0;
  TrackFault fault = TrackFault::kNone;
  while (fed < text.size() && fault == TrackFault::kNone) {
    fault = FeedTrackByte(receiver, static_cast<uint8_t>(text[fed++]));
  }
  // Sentences ahead of the text are no part of it.
  Require(text.substr(0, fed).ends_with(receiver.text));
  const auto ends =
      static_cast<size_t>(std::count(receiver.text.begin(), receiver.text.end(), '\n'));
  Require(receiver.decoder.points.size() + receiver.decoder.g_records <= ends);
  Require(fault == TrackFault::kNone || fault == TrackFault::kTextMemory ||
          fault == TrackFault::kPositionMemory);
  Require((receiver.damaged_lines == 0) == (receiver.fault == TrackFault::kNone));
  (void)Judge({.receiver = &receiver});
}

}  // namespace skyhaul
