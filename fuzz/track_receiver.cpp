// A track's bytes as an instrument could send them: what is received is kept to the byte, and a
// fault never leaves a fix that no line held.

#include "protocols/flytec/track_receiver.h"

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
  Require(receiver.text == text.substr(0, fed));
  const auto ends =
      static_cast<size_t>(std::count(receiver.text.begin(), receiver.text.end(), '\n'));
  Require(receiver.decoder.points.size() + receiver.decoder.g_records <= ends);
  Require(TrackFaultMessage(fault, receiver.detail).empty() == (fault == TrackFault::kNone));
}

}  // namespace skyhaul
