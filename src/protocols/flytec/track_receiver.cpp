#include "protocols/flytec/track_receiver.h"

#include <cstdio>

#include "core/count_message.h"

namespace skyhaul::flytec {

namespace {

constexpr size_t kLongestLine = 81;

TrackFault DecodeLine(TrackReceiver& receiver) {
  // A line without a byte, as between two CR LF.
  if (receiver.line.empty()) return TrackFault::kNone;
  const int result = igc::DecodeLine(receiver.decoder, receiver.line);
  receiver.line.clear();
  if (receiver.decoder.points.size() > receiver.most_positions) return TrackFault::kPositionMemory;
  if (result >= 0) return TrackFault::kNone;
  receiver.detail = -result;
  return TrackFault::kFormat;
}

}  // namespace

TrackFault FeedTrackByte(TrackReceiver& receiver, uint8_t byte) {
  if (receiver.text.size() >= receiver.most_text) return TrackFault::kTextMemory;
  receiver.text += static_cast<char>(byte);
  if (byte == '\n') return DecodeLine(receiver);
  // Kept in the text, which is signed as it stands, but not part of a record.
  if (byte == '\r') return TrackFault::kNone;
  // At once and not at the end of the line: noise may have no line end.
  if (receiver.line.empty() && (byte < 'A' || byte > 'Z')) {
    receiver.detail = byte;
    return TrackFault::kBadRecordType;
  }
  if (receiver.line.size() >= kLongestLine) return TrackFault::kTooLongSentence;
  receiver.line += static_cast<char>(byte);
  return TrackFault::kNone;
}

std::string TrackFaultMessage(TrackFault fault, int detail) {
  switch (fault) {
    case TrackFault::kTextMemory:
      return "E200 Track log memory allocation";
    case TrackFault::kPositionMemory:
      return "E201 Track log memory allocation";
    case TrackFault::kBadRecordType: {
      char text[40];
      std::snprintf(text, sizeof text, "E205 Bad record type (%02X)",
                    static_cast<unsigned>(detail));
      return text;
    }
    case TrackFault::kTooLongSentence:
      return "E207 Too long sentence";
    case TrackFault::kFormat:
      return FormatCountMessage("E206 Format error %", static_cast<uint32_t>(detail));
    case TrackFault::kNone:
      break;
  }
  return "";
}

}  // namespace skyhaul::flytec
