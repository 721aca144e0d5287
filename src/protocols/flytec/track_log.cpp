#include "protocols/flytec/track_log.h"

#include <algorithm>
#include <cstdio>
#include <utility>
#include <vector>

#include "core/count_message.h"
#include "device/choose_flights.h"
#include "device/position_reports.h"
#include "protocols/flytec/join_flights.h"
#include "protocols/flytec/product_data.h"
#include "protocols/flytec/requests.h"
#include "protocols/flytec/track_list.h"
#include "protocols/flytec/track_receiver.h"
#include "protocols/sentence/write_sentence.h"

namespace skyhaul::flytec {

namespace {

// The instrument gets a rest before each flight.
constexpr uint32_t kBeforeRequest_ms = 500;
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

int ReceiveTrack(Job& job, TrackReceiver& receiver, uint32_t duration_s) {
  TrackFault fault = TrackFault::kNone;
  uint32_t last_report_time = 0;
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
  if (fault != TrackFault::kNone) return Fail(job, TrackFaultMessage(fault, receiver.detail));
  if (result == kPortFailed) return Fail(job, "E203 COM port read error");
  // Silence is the end of a flight: IGC text has no mark of its own.
  return result == kTimedOut ? 0 : result;
}

// Downloads one flight after the given request.
int DownloadTrack(Job& job, const std::string& request, uint32_t index, uint32_t duration_s) {
  if (StopRequested(job.operation)) return kAborted;
  ShowStatus(job.operation, FormatCountMessage("Requesting track log %", index + 1));
  Pause(job.link, kBeforeRequest_ms);
  // An abort during the pause must not start a transfer of minutes.
  if (StopRequested(job.operation)) return kAborted;
  if (WriteSentence(job.link, request) != 0) return Fail(job, "E202 COM port write error");

  TrackReceiver receiver;
  const int received = ReceiveTrack(job, receiver, duration_s);
  if (received != 0) return received;
  igc::Decoder& decoder = receiver.decoder;
  if (decoder.points.empty()) return Fail(job, "0 points received");
  // Kept all the same: an unsigned flight is better than none.
  if (decoder.g_records == 0) ShowMessage(job.operation, "No G-records found", kTitle);
  job.data.flights.push_back({.points = std::move(decoder.points),
                              .instrument_igc = {.expected = true,
                                                 .text = std::move(receiver.text),
                                                 .manufacturer = std::move(decoder.manufacturer),
                                                 .serial = std::move(decoder.serial)},
                              .index = index});
  return 0;
}

// Picks what is to be fetched. Returns 0 with at least one index, ascending, or -1.
int ChooseTracks(const Job& job, std::vector<uint32_t>& chosen) {
  if (job.data.track_list.empty()) return Fail(job, "The instrument holds no track logs");
  if (ChooseFlights(job, chosen) < 0) return -1;
  for (const uint32_t index : chosen) {
    if (index < kRequestableTracks) continue;
    return Fail(job, FormatCountMessage("Track log % is too old to be requested", index + 1));
  }
  return 0;
}

uint32_t DurationOf(const std::vector<TrackListEntry>& list, uint32_t index) {
  const auto has_index = [&](const TrackListEntry& entry) { return entry.index == index; };
  const auto found = std::find_if(list.begin(), list.end(), has_index);
  return found == list.end() ? 0 : found->duration_s;
}

int DownloadChosen(Job& job, const ProductData& product) {
  const int listed = ReadTrackList(job, product);
  if (listed < 0) return listed;
  std::vector<uint32_t> chosen;
  const int choice = ChooseTracks(job, chosen);
  if (choice < 0) return choice;
  for (const uint32_t index : chosen) {
    const uint32_t duration_s = DurationOf(job.data.track_list, index);
    const int downloaded = DownloadTrack(job, TrackRequest(index), index, duration_s);
    if (downloaded != 0) return downloaded;
  }
  return 0;
}

// Shows the number of all positions received as the last status, and returns it.
int ShowPoints(const Job& job) {
  uint32_t points = 0;
  for (const Flight& flight : job.data.flights) {
    points += static_cast<uint32_t>(flight.points.size());
  }
  ShowStatus(job.operation, FormatCountMessage("% points received", points));
  return static_cast<int>(points);
}

int Join(Job& job) {
  switch (JoinFlights(job.data.flights)) {
    case JoinResult::kOverlap:
      return Fail(job, "Overlapping track start/stop times");
    case JoinResult::kGap: {
      char text[64];
      std::snprintf(text, sizeof text, "Time gap between tracks greater than %u s", kLongestGap_s);
      return Fail(job, text);
    }
    case JoinResult::kJoined:
      break;
  }
  return 0;
}

}  // namespace

int TrackLogJob(Job& job) {
  ProductData product;
  const int identified = ReadProductData(job, product);
  if (identified != 0) return identified;
  const int downloaded = job.parameter < 0 ? DownloadTrack(job, kRequestCurrentIgc, 0, 0)
                                           : DownloadChosen(job, product);
  if (downloaded != 0) return downloaded;
  if (job.join_tracks && Join(job) != 0) return -1;
  return ShowPoints(job);
}

int AllTracksJob(Job& job) {
  ProductData product;
  const int identified = ReadProductData(job, product);
  if (identified != 0) return identified;
  const int listed = ReadTrackList(job, product);
  if (listed < 0) return listed;
  for (const TrackListEntry& entry : job.data.track_list) {
    if (entry.index >= kRequestableTracks) {
      // The list is in the order of the index, so all that follow are too old as well.
      ShowMessage(job.operation,
                  FormatCountMessage("Track log % is too old to be requested", entry.index + 1),
                  kTitle);
      break;
    }
    ShowStatus(job.operation, FormatCountMessage("Reading track log %", entry.index + 1));
    const int downloaded =
        DownloadTrack(job, TrackRequest(entry.index), entry.index, entry.duration_s);
    if (downloaded != 0) return downloaded;
    ShowStatus(job.operation, FormatCountMessage("Analysing track log %", entry.index + 1));
  }
  const int points = ShowPoints(job);
  ShowStatus(job.operation, "Downloading completed");
  return points;
}

}  // namespace skyhaul::flytec
