#include "protocols/flytec/whole_flight.h"

#include <algorithm>
#include <vector>

#include "core/count_message.h"
#include "core/text/date_time.h"
#include "core/time_scale.h"

namespace skyhaul::flytec {

namespace {

constexpr uint32_t kShorter_s = 60;
constexpr uint32_t kStartOff_s = 300;
constexpr uint32_t kQuarterHour_s = 900;
constexpr uint32_t kFarthestZone_s = 14 * 3600;

std::string StartText(uint32_t time) {
  const CalendarTime start = CalendarFromTime(time);
  return DateText(start) + ' ' + TimeText(start);
}

// From the first fix to the last one in time: a receiver may set its clock back on the way.
uint32_t Flown_s(const igc::Decoder& decoder) {
  if (decoder.points.empty()) return 0;
  const auto last =
      std::max_element(decoder.points.begin(), decoder.points.end(),
                       [](const TrackPoint& a, const TrackPoint& b) { return a.time < b.time; });
  return last->time - std::min(decoder.start_time, last->time);
}

// An instrument may list its local time, which is off by whole quarter hours.
bool StartsAsListed(uint32_t start, uint32_t listed) {
  const uint32_t off_s = start > listed ? start - listed : listed - start;
  if (off_s <= kStartOff_s) return true;
  constexpr uint32_t kClock_s = 60;
  const uint32_t beside_s = (off_s + kClock_s) % kQuarterHour_s;
  return off_s <= kFarthestZone_s + kClock_s && beside_s <= 2 * kClock_s;
}

std::string ReceivedText(const Transfer& transfer) {
  const std::string received = DurationText(Flown_s(transfer.receiver->decoder));
  if (transfer.listed == nullptr) return received + " received";
  return received + " of " + DurationText(transfer.listed->duration_s) + " received";
}

void FindWrongLines(const TrackReceiver& receiver, std::vector<std::string>& wrong) {
  if (receiver.damaged_lines > 0) {
    wrong.push_back(FormatCountMessage("line % is damaged", receiver.fault_line));
    if (receiver.damaged_lines > 1) {
      wrong.back() += FormatCountMessage(" and % more", receiver.damaged_lines - 1);
    }
  }
  const bool cut = !receiver.text.empty() && !receiver.text.ends_with('\n');
  if (cut) wrong.push_back(FormatCountMessage("line % is cut", receiver.lines + 1));
  if (!receiver.text.starts_with('A')) wrong.emplace_back("its beginning is missing");
  if (receiver.decoder.g_records == 0) wrong.emplace_back("its security record is missing");
}

bool IsShorterThanListed(const Transfer& transfer) {
  return transfer.listed != nullptr &&
         Flown_s(transfer.receiver->decoder) + kShorter_s < transfer.listed->duration_s;
}

}  // namespace

std::string WhatIsMissing(const Transfer& transfer) {
  const TrackReceiver& receiver = *transfer.receiver;
  std::vector<std::string> wrong;
  if (receiver.decoder.points.empty()) wrong.emplace_back("no position in it");
  FindWrongLines(receiver, wrong);
  if (transfer.listed != nullptr && !receiver.decoder.points.empty() &&
      !StartsAsListed(receiver.decoder.start_time, transfer.listed->start_time)) {
    wrong.push_back("it starts at " + StartText(receiver.decoder.start_time) +
                    " and the list says " + StartText(transfer.listed->start_time));
  }
  if (transfer.losses > 0) wrong.emplace_back("bytes were lost on the way");
  if (transfer.port_failed) wrong.emplace_back("the port failed");
  if (wrong.empty() && !IsShorterThanListed(transfer)) return "";
  std::string text = ReceivedText(transfer);
  for (const std::string& one : wrong) text.append(", ").append(one);
  return text;
}

}  // namespace skyhaul::flytec
