#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "formats/igc/decode_line.h"

namespace skyhaul::flytec {

// What is wrong with a track's IGC text as it arrives.
enum class TrackFault {
  kNone,
  kTextMemory,      // more text than a flight can be
  kPositionMemory,  // more positions than a flight can have
  kBadRecordType,   // TrackReceiver::detail is the byte
  kTooLongSentence,
  kFormat,  // TrackReceiver::detail is the line decoder's error number
};

// A track that arrives byte by byte: the text as it is and the positions decoded from its lines.
struct TrackReceiver {
  // A week at one fix a second has 600,000 positions and 22 MB of text. An instrument that sends
  // more than this will not stop by itself.
  size_t most_text = size_t{64} << 20;
  size_t most_positions = 2'000'000;

  std::string text;
  igc::Decoder decoder;
  uint32_t lines = 0;  // complete ones

  // A second A record, or a fix behind the security record: a late answer and the one to a second
  // request are both in the text.
  bool holds_another = false;

  // The lines that could not be read. They are in the text, and no position comes from them.
  TrackFault fault = TrackFault::kNone;  // of the first one
  int detail = 0;
  uint32_t fault_line = 0;  // from 1
  uint32_t damaged_lines = 0;

  std::string line;    // the line being received
  bool begun = false;  // an A record has come
  bool line_damaged = false;
  bool after_cr = false;
  bool passing_over = false;  // a sentence that is no part of the flight
};

// Feeds one byte that is not flow control. LF ends a line, CR is not part of one, and a last line
// without LF is not decoded: it was cut off. Sentences ('$' first) ahead of the text are late
// answers to other requests and are passed over. Returns kTextMemory or kPositionMemory when
// nothing more is to be fed; other faults are kept in the receiver.
TrackFault FeedTrackByte(TrackReceiver& receiver, uint8_t byte);

// The message of a fault, as a driver of this family numbers it.
std::string TrackFaultMessage(TrackFault fault, int detail);

}  // namespace skyhaul::flytec
