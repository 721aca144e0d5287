#include "protocols/flytec/track_receiver.h"

#include <cstdio>

#include "core/count_message.h"

namespace skyhaul::flytec {

namespace {

constexpr size_t kLongestLine = 81;

void Damage(TrackReceiver& receiver, TrackFault fault, int detail) {
  receiver.line_damaged = true;
  if (receiver.damaged_lines++ > 0) return;
  receiver.fault = fault;
  receiver.detail = detail;
  receiver.fault_line = receiver.lines + 1;
}

void WatchForAnother(TrackReceiver& receiver) {
  const bool begins = receiver.line.starts_with('A');
  if (begins && receiver.begun) receiver.holds_another = true;
  if (receiver.line.starts_with('B') && receiver.decoder.g_records > 0) {
    receiver.holds_another = true;
  }
  receiver.begun = receiver.begun || begins;
}

void EndLine(TrackReceiver& receiver) {
  // A line without a byte, as between two CR LF, is none.
  if (!receiver.line.empty() && !receiver.line_damaged) {
    WatchForAnother(receiver);
    const int result = igc::DecodeLine(receiver.decoder, receiver.line);
    if (result < 0) Damage(receiver, TrackFault::kFormat, -result);
  }
  receiver.line.clear();
  receiver.line_damaged = false;
  receiver.after_cr = false;
  ++receiver.lines;
}

// Returns true for a byte ahead of the text that is no part of it.
bool PassOver(TrackReceiver& receiver, uint8_t byte) {
  if (byte == '$' && receiver.text.empty()) receiver.passing_over = true;
  if (!receiver.passing_over) return false;
  receiver.passing_over = byte != '\n';
  return true;
}

}  // namespace

TrackFault FeedTrackByte(TrackReceiver& receiver, uint8_t byte) {
  if (PassOver(receiver, byte)) return TrackFault::kNone;
  if (receiver.text.size() >= receiver.most_text) return TrackFault::kTextMemory;
  receiver.text += static_cast<char>(byte);
  if (byte == '\n') {
    EndLine(receiver);
    const bool too_many = receiver.decoder.points.size() > receiver.most_positions;
    return too_many ? TrackFault::kPositionMemory : TrackFault::kNone;
  }
  // Two lines whose LF between them was lost may be short enough for one.
  if (receiver.after_cr && byte != '\r' && !receiver.line_damaged) {
    Damage(receiver, TrackFault::kTooLongSentence, 0);
  }
  receiver.after_cr = byte == '\r';
  // Kept in the text, which is signed as it stands, but not part of a record.
  if (byte == '\r' || receiver.line_damaged) return TrackFault::kNone;
  if (receiver.line.empty() && (byte < 'A' || byte > 'Z')) {
    Damage(receiver, TrackFault::kBadRecordType, byte);
  } else if (receiver.line.size() >= kLongestLine) {
    Damage(receiver, TrackFault::kTooLongSentence, 0);
  } else {
    receiver.line += static_cast<char>(byte);
  }
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
