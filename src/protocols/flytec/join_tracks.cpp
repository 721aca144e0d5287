#include "protocols/flytec/join_tracks.h"

#include <algorithm>
#include <utility>

namespace skyhaul {

namespace {

uint32_t StartOf(const DownloadedTrack& track) {
  return track.points.front().time;
}

uint32_t EndOf(const DownloadedTrack& track) {
  return track.points.back().time;
}

}  // namespace

JoinResult JoinTracks(std::vector<DownloadedTrack>& tracks) {
  if (tracks.size() < 2) return JoinResult::kJoined;
  std::vector<const DownloadedTrack*> in_order;
  for (const DownloadedTrack& track : tracks) in_order.push_back(&track);
  std::stable_sort(in_order.begin(), in_order.end(),
                   [](const auto* a, const auto* b) { return StartOf(*a) < StartOf(*b); });

  DownloadedTrack joined;
  joined.index = in_order.front()->index;
  for (const DownloadedTrack* track : in_order) {
    if (!joined.points.empty()) {
      if (StartOf(*track) < EndOf(joined)) return JoinResult::kOverlap;
      if (StartOf(*track) - EndOf(joined) > kLongestGap_s) return JoinResult::kGap;
    }
    joined.points.insert(joined.points.end(), track->points.begin(), track->points.end());
  }
  tracks.clear();
  tracks.push_back(std::move(joined));
  return JoinResult::kJoined;
}

}  // namespace skyhaul
