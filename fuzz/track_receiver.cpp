// A track's bytes as an instrument could send them: what is received is kept to the byte, and a
// fault never leaves a fix that no line held.

#include "protocols/flytec/track_receiver.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

namespace {

void Require(bool holds) {
  if (!holds) __builtin_trap();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace skyhaul;
  using namespace skyhaul::flytec;
  TrackReceiver receiver;
  size_t fed = 0;
  TrackFault fault = TrackFault::kNone;
  while (fed < size && fault == TrackFault::kNone) fault = FeedTrackByte(receiver, data[fed++]);
  Require(receiver.text == std::string(reinterpret_cast<const char*>(data), fed));
  const auto ends =
      static_cast<size_t>(std::count(receiver.text.begin(), receiver.text.end(), '\n'));
  Require(receiver.decoder.points.size() + receiver.decoder.g_records <= ends);
  Require(TrackFaultMessage(fault, receiver.detail).empty() == (fault == TrackFault::kNone));
  return 0;
}
