#include "protocols/flytec/track_log.h"

#include <algorithm>
#include <cstdio>
#include <vector>

#include "core/count_message.h"
#include "core/text/date_time.h"
#include "core/time_scale.h"
#include "device/choose_flights.h"
#include "protocols/flytec/fetch_track.h"
#include "protocols/flytec/join_flights.h"
#include "protocols/flytec/product_data.h"
#include "protocols/flytec/requests.h"
#include "protocols/flytec/track_list.h"

namespace skyhaul::flytec {

namespace {

constexpr const char* kTitle = "Read GPS track log";

int Fail(const Job& job, const std::string& text) {
  ShowMessage(job.operation, text, kTitle);
  return -1;
}

// Picks what is to be fetched. Returns 0 with at least one index, ascending, or -1.
int ChooseTracks(const Job& job, std::vector<uint32_t>& chosen) {
  const std::vector<TrackListEntry>& list = job.data.track_list;
  // Without the first line, which is the newest flight's, nobody knows which is the newest.
  if (job.choice.how == FlightChoice::How::kNewest && list.front().index != 0) {
    return Fail(job, "The newest flight is not among those that the instrument has listed");
  }
  if (ChooseFlights(job, chosen) < 0) return -1;
  for (const uint32_t index : chosen) {
    if (index < kRequestableTracks) continue;
    return Fail(job, FormatCountMessage("Track log % is too old to be requested", index + 1));
  }
  return 0;
}

const TrackListEntry* EntryOf(const std::vector<TrackListEntry>& list, uint32_t index) {
  const auto has_index = [&](const TrackListEntry& entry) { return entry.index == index; };
  return &*std::find_if(list.begin(), list.end(), has_index);
}

// Fetches listed flights. One that is not whole does not keep the others from being fetched.
// Returns 0, or a negative number when one of them is not whole or the job cannot go on.
int DownloadListed(Job& job, const std::vector<uint32_t>& indices) {
  int all = 0;
  for (const uint32_t index : indices) {
    const int downloaded = FetchTrack(job, {.request = TrackRequest(index),
                                            .index = index,
                                            .listed = EntryOf(job.data.track_list, index)});
    if (downloaded != 0 && downloaded != kIncomplete) return downloaded;
    if (downloaded != 0) all = downloaded;
  }
  return all;
}

int DownloadChosen(Job& job, const ProductData& product) {
  const int listed = ReadTrackList(job, product);
  if (listed < 0) return listed;
  std::vector<uint32_t> chosen;
  const int choice = ChooseTracks(job, chosen);
  if (choice < 0) return choice;
  const int downloaded = DownloadListed(job, chosen);
  // Whole flights of a list that is not: the person must not take them for all there are.
  return downloaded == 0 && !job.data.list_is_whole ? kIncomplete : downloaded;
}

// Nobody has chosen this flight by name, so its date is told before it is saved. No list says how
// long it should be, so the person is told what is not known of it.
int DownloadSelected(Job& job) {
  const int downloaded = FetchTrack(job, {.request = kRequestCurrentIgc});
  if (job.data.flights.empty()) return downloaded;
  const std::vector<TrackPoint>& points = job.data.flights[0].points;
  const uint32_t first = points.front().time;
  const CalendarTime start = CalendarFromTime(first);
  ShowStatus(job.operation, "The flight selected on the instrument is of " + DateText(start) + ' ' +
                                TimeText(start) + " UTC and " +
                                DurationText(std::max(points.back().time, first) - first) +
                                " long; there is no list to compare it with");
  return downloaded;
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
  const int downloaded = job.parameter < 0 ? DownloadSelected(job) : DownloadChosen(job, product);
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
  int all = job.data.list_is_whole ? 0 : kIncomplete;
  for (const TrackListEntry& entry : job.data.track_list) {
    if (entry.index >= kRequestableTracks) {
      // The list is in the order of the index, so all that follow are too old as well.
      ShowMessage(job.operation,
                  FormatCountMessage("Track log % is too old to be requested", entry.index + 1),
                  kTitle);
      break;
    }
    ShowStatus(job.operation, FormatCountMessage("Reading track log %", entry.index + 1));
    const int downloaded = DownloadListed(job, {entry.index});
    if (downloaded != 0 && downloaded != kIncomplete) return downloaded;
    if (downloaded != 0) all = downloaded;
    ShowStatus(job.operation, FormatCountMessage("Analysing track log %", entry.index + 1));
  }
  const int points = ShowPoints(job);
  ShowStatus(job.operation, "Downloading completed");
  return all != 0 ? all : points;
}

}  // namespace skyhaul::flytec
