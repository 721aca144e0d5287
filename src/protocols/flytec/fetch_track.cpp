#include "protocols/flytec/fetch_track.h"

#include <algorithm>
#include <utility>

#include "core/count_message.h"
#include "device/position_reports.h"
#include "protocols/flytec/track_receiver.h"
#include "protocols/flytec/whole_flight.h"
#include "protocols/sentence/write_sentence.h"

namespace skyhaul::flytec {

namespace {

// The instrument gets a rest before each flight.
constexpr uint32_t kBeforeRequest_ms = 500;
// After a flight that broke off. An instrument that was only slow takes no request while it sends.
constexpr uint32_t kBeforeSecond_ms = 3000;
constexpr uint32_t kSilence_ms = 2000;
constexpr uint32_t kFixesPerProgress = 100;
constexpr const char* kTitle = "Read GPS track log";

int Fail(const Job& job, const std::string& text) {
  ShowMessage(job.operation, text, kTitle);
  return -1;
}

// Shows the first position and every hundredth after it, as a share of the listed duration.
void ShowPosition(const Job& job, const igc::Decoder& decoder, uint32_t duration_s) {
  const auto count = static_cast<uint32_t>(decoder.points.size());
  // Every hundredth is enough for a person.
  if (count % kFixesPerProgress != 1) return;
  if (count == 1) ShowStatus(job.operation, "Receiving track log");
  // A fix may lie before the first one when the receiver has set its clock.
  const uint32_t now = std::max(decoder.points.back().time, decoder.start_time);
  const uint32_t flown_s = now - decoder.start_time;
  const std::string text =
      FormatCountMessage("Track position % (%m %s)", count, flown_s / 60, flown_s % 60);
  const int percent =
      duration_s == 0
          ? kUnknownPercent
          : static_cast<int>(std::min<uint64_t>(uint64_t{flown_s} * 100 / duration_s, 100));
  ShowProgress(job.operation, text, percent);
}

std::string NameOf(const Wanted& wanted) {
  if (wanted.listed == nullptr) return "The flight selected on the instrument";
  return FormatCountMessage("Flight %", wanted.index + 1);
}

// What one request has brought.
struct Reception {
  TrackReceiver receiver;
  int result = 0;
  Verdict verdict = {.missing = "nothing received"};
};

bool IsWhole(const Reception& reception) {
  return reception.verdict.missing.empty();
}

// Receives until the instrument is silent. Returns 0 then, or a negative number after a message.
int ReceiveTrack(Job& job, TrackReceiver& receiver, uint32_t duration_s,
                 uint32_t& last_report_time) {
  TrackFault fault = TrackFault::kNone;
  const auto feed = [&](uint8_t byte) {
    const size_t before = receiver.decoder.points.size();
    fault = FeedTrackByte(receiver, byte);
    if (fault != TrackFault::kNone) return Feed::kDone;
    if (receiver.decoder.points.size() > before) {
      ShowPosition(job, receiver.decoder, duration_s);
      ReportPosition(job, receiver.decoder.points.back(), last_report_time);
    }
    return Feed::kMore;
  };
  const int result =
      ReadWithDeadline(job.link, {.timeout_ms = kSilence_ms, .since_last_byte = true}, feed);
  // The fault first: it has stopped the reading, whose result says only that it was stopped.
  if (fault != TrackFault::kNone) {
    // What never ends is no flight.
    receiver = {};
    return Fail(job, TrackFaultMessage(fault, 0));
  }
  if (result == kPortFailed) (void)Fail(job, "E203 COM port read error");
  // Silence is the end of a flight: IGC text has no mark of its own.
  return result == kTimedOut ? 0 : result;
}

Reception RequestTrack(Job& job, const Wanted& wanted, uint32_t pause_ms,
                       uint32_t& last_report_time) {
  Reception reception;
  ShowStatus(job.operation, FormatCountMessage("Requesting track log %", wanted.index + 1));
  reception.result = BringToRest(job.link, pause_ms);
  if (reception.result != 0) return reception;
  if (WriteSentence(job.link, wanted.request) != 0) {
    reception.result = Fail(job, "E202 COM port write error");
    return reception;
  }
  const uint32_t losses = Losses(job.link);
  reception.result =
      ReceiveTrack(job, reception.receiver,
                   wanted.listed == nullptr ? 0 : wanted.listed->duration_s, last_report_time);
  // Whoever aborts a transfer wants nothing of it.
  if (reception.result == kAborted) reception.receiver = {};
  const bool port_failed = reception.result == kPortFailed;
  reception.verdict = Judge({.receiver = &reception.receiver,
                             .listed = wanted.listed,
                             .list = job.data.track_list,
                             .losses = port_failed ? 0 : Losses(job.link) - losses,
                             .port_failed = port_failed});
  return reception;
}

// A flight that comes twice in the same way from its A record to its security record is all that
// the instrument has. Its list counts otherwise.
void AcceptLength(const Job& job, const Wanted& wanted, const Reception& first, Reception& second) {
  if (!second.verdict.only_shorter || first.receiver.text != second.receiver.text) return;
  ShowStatus(job.operation, NameOf(wanted) + " is shorter than the list says, twice alike: " +
                                second.verdict.missing);
  second.verdict = {};
}

// A flight that is not whole is requested once more, and the better of the two is kept.
Reception RequestTwice(Job& job, const Wanted& wanted) {
  uint32_t last_report_time = 0;  // a client is not told of the same positions twice
  Reception first = RequestTrack(job, wanted, kBeforeRequest_ms, last_report_time);
  if (first.result != 0 || IsWhole(first)) return first;
  ShowStatus(job.operation, NameOf(wanted) + " did not arrive whole, requesting it once more");
  Reception second = RequestTrack(job, wanted, kBeforeSecond_ms, last_report_time);
  AcceptLength(job, wanted, first, second);
  const bool better = IsWhole(second) ||
                      second.receiver.decoder.points.size() > first.receiver.decoder.points.size();
  if (better) return second;
  // How the second went still decides whether the job can go on.
  first.result = second.result;
  return first;
}

// Keeps what was received, also of a flight that is not whole: it may be all that anybody will get.
void Deliver(Job& job, const Wanted& wanted, Reception& reception) {
  igc::Decoder& decoder = reception.receiver.decoder;
  job.data.flights.push_back({.points = std::move(decoder.points),
                              .instrument_igc = {.expected = true,
                                                 .text = std::move(reception.receiver.text),
                                                 .manufacturer = std::move(decoder.manufacturer),
                                                 .serial = std::move(decoder.serial)},
                              .missing = std::move(reception.verdict.missing),
                              .index = wanted.index});
}

void ShowIncomplete(const Job& job, const Wanted& wanted, const Reception& reception) {
  const TrackReceiver& receiver = reception.receiver;
  const std::string incomplete = NameOf(wanted) + " is incomplete: " + reception.verdict.missing;
  // What ended the job has had its message.
  if (reception.result != 0) return ShowStatus(job.operation, incomplete);
  std::string text = TrackFaultMessage(receiver.fault, receiver.detail);
  if (text.empty() && receiver.decoder.g_records == 0) text = "No G-records found";
  if (receiver.decoder.points.empty()) text = "0 points received";
  if (!text.empty()) text += '\n';
  (void)Fail(job, text + incomplete);
}

}  // namespace

int FetchTrack(Job& job, const Wanted& wanted) {
  Reception reception = RequestTwice(job, wanted);
  const int result = reception.result;
  const bool whole = IsWhole(reception);
  const bool empty = reception.receiver.decoder.points.empty();
  if (!whole && (result == 0 || !empty)) ShowIncomplete(job, wanted, reception);
  if (!empty) Deliver(job, wanted, reception);
  if (result != 0) return result;
  return whole ? 0 : kIncomplete;
}

}  // namespace skyhaul::flytec
