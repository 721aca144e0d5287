#include "protocols/flytec/join_flights.h"

#include <algorithm>
#include <utility>

namespace skyhaul::flytec {

namespace {

uint32_t StartOf(const Flight& flight) {
  return flight.points.front().time;
}

uint32_t EndOf(const Flight& flight) {
  return flight.points.back().time;
}

JoinResult CheckOrder(const std::vector<Flight*>& in_order) {
  for (size_t i = 1; i < in_order.size(); ++i) {
    const uint32_t end = EndOf(*in_order[i - 1]);
    const uint32_t start = StartOf(*in_order[i]);
    if (start < end) return JoinResult::kOverlap;
    if (start - end > kLongestGap_s) return JoinResult::kGap;
  }
  return JoinResult::kJoined;
}

}  // namespace

JoinResult JoinFlights(std::vector<Flight>& flights) {
  if (flights.size() < 2) return JoinResult::kJoined;
  std::vector<Flight*> in_order;
  for (Flight& flight : flights) in_order.push_back(&flight);
  // Stable, so that flights which start in the same second keep the order of the list.
  std::stable_sort(in_order.begin(), in_order.end(),
                   [](const auto* a, const auto* b) { return StartOf(*a) < StartOf(*b); });
  const JoinResult result = CheckOrder(in_order);
  if (result != JoinResult::kJoined) return result;

  Flight joined;
  joined.index = in_order.front()->index;
  for (Flight* flight : in_order) {
    joined.points.insert(joined.points.end(), flight->points.begin(), flight->points.end());
    flight->points = {};  // so that at most one flight is held twice
  }
  flights.clear();
  flights.push_back(std::move(joined));
  return JoinResult::kJoined;
}

}  // namespace skyhaul::flytec
