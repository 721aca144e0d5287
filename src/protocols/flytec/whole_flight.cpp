#include "protocols/flytec/whole_flight.h"

#include <algorithm>
#include <utility>
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

uint32_t Apart_s(uint32_t a, uint32_t b) {
  return a > b ? a - b : b - a;
}

bool StartsAt(const TrackListEntry& entry, uint32_t start) {
  return Apart_s(start, entry.start_time) <= kStartOff_s;
}

bool StartsAsListed(const Transfer& transfer, uint32_t start) {
  if (StartsAt(*transfer.listed, start)) return true;
  // Late answers to an earlier request bring another flight of the same list.
  const auto starts_then = [&](const TrackListEntry& entry) { return StartsAt(entry, start); };
  if (std::any_of(transfer.list.begin(), transfer.list.end(), starts_then)) return false;
  // An instrument may list its local time, which is off by whole quarter hours.
  constexpr uint32_t kClock_s = 60;
  const uint32_t off_s = Apart_s(start, transfer.listed->start_time);
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
  if (receiver.holds_another) wrong.emplace_back("another flight is in it");
  if (receiver.decoder.g_records == 0) wrong.emplace_back("its security record is missing");
}

bool IsShorterThanListed(const Transfer& transfer) {
  return transfer.listed != nullptr &&
         Flown_s(transfer.receiver->decoder) + kShorter_s < transfer.listed->duration_s;
}

}  // namespace

Verdict Judge(const Transfer& transfer) {
  const TrackReceiver& receiver = *transfer.receiver;
  std::vector<std::string> wrong;
  if (receiver.decoder.points.empty()) wrong.emplace_back("no position in it");
  FindWrongLines(receiver, wrong);
  if (transfer.listed != nullptr && !receiver.decoder.points.empty() &&
      !StartsAsListed(transfer, receiver.decoder.start_time)) {
    wrong.push_back("it starts at " + StartText(receiver.decoder.start_time) +
                    " and the list says " + StartText(transfer.listed->start_time));
  }
  if (transfer.losses > 0) wrong.emplace_back("bytes were lost on the way");
  if (transfer.port_failed) wrong.emplace_back("the port failed");
  const bool shorter = IsShorterThanListed(transfer);
  if (wrong.empty() && !shorter) return {};
  std::string text = ReceivedText(transfer);
  for (const std::string& one : wrong) text.append(", ").append(one);
  return {.missing = std::move(text), .only_shorter = wrong.empty()};
}

}  // namespace skyhaul::flytec
