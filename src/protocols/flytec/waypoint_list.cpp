#include "protocols/flytec/waypoint_list.h"

#include <string>
#include <utility>
#include <vector>

#include "core/count_message.h"
#include "core/time_scale.h"
#include "protocols/flytec/product_data.h"
#include "protocols/flytec/requests.h"
#include "protocols/flytec/waypoint_recogniser.h"
#include "protocols/sentence/write_sentence.h"

namespace skyhaul::flytec {

namespace {

constexpr uint32_t kSilence_ms = 1000;
// The instruments hold 200. One that sends more than this will not stop by itself.
constexpr size_t kMostWaypoints = 10'000;
constexpr uint32_t kBeforeAskingAgain_ms = 1000;
constexpr int kTimesAsked = 2;

uint32_t Now(const Job& job) {
  const ClockFunctions& clock = job.link.platform->clock;
  return TimeFromUnix(clock.unix_time_s(clock.context));
}

// Collects waypoints until the instrument is silent. Returns as ReadWaypointList() does.
int ReceiveWaypoints(Job& job, std::vector<WaypointRecord>& waypoints, std::string& problem) {
  WaypointRecogniser recogniser;
  const uint32_t time = Now(job);
  int error = 0;
  const auto feed = [&](uint8_t byte) {
    error = FeedWaypointByte(recogniser, byte);
    // The wrong waypoint ends the list: a part of it would look like the whole.
    if (error < 0 || waypoints.size() == kMostWaypoints) return Feed::kDone;
    if (error > 0) return Feed::kMore;
    waypoints.push_back(recogniser.waypoint);
    waypoints.back().time = time;
    const auto count = static_cast<uint32_t>(waypoints.size());
    ShowProgress(job.operation, FormatCountMessage("Waypoint % received", count));
    return Feed::kMore;
  };
  const int result =
      ReadWithDeadline(job.link, {.timeout_ms = kSilence_ms, .since_last_byte = true}, feed);
  if (result == kAborted) return kAborted;
  if (result == kPortFailed) {
    problem = "E301 COM port read error";
    return kPortFailed;
  }
  if (error < 0) {
    problem = FormatCountMessage("E302 Format error %", static_cast<uint32_t>(-error));
  } else if (result == 0) {
    // The only other way to end without a time-out is a list that is too long.
    problem = "E303 Waypoint memory allocation";
  } else if (recogniser.state != WaypointState::kStart) {
    // The silence that ends the list came before the end of a sentence.
    problem = "The waypoint list broke off inside a waypoint";
  }
  return problem.empty() ? 0 : kTimedOut;
}

int ReadWaypoints(Job& job) {
  std::vector<WaypointRecord> waypoints;
  std::string problem;
  const int read = ReadWaypointList(job, waypoints, problem);
  if (!problem.empty()) ShowMessage(job.operation, problem, "Read GPS waypoints");
  if (read != 0) return read;
  const auto count = static_cast<uint32_t>(waypoints.size());
  job.data.waypoints = std::move(waypoints);
  ShowStatus(job.operation, FormatCountMessage("% waypoints received", count));
  return static_cast<int>(count);
}

}  // namespace

int ReadWaypointList(Job& job, std::vector<WaypointRecord>& waypoints, std::string& problem) {
  for (int asked = 1;; ++asked) {
    waypoints.clear();
    if (WriteSentence(job.link, kRequestWaypoints) != 0) {
      problem = "E304 COM port write error";
      return kPortFailed;
    }
    const int received = ReceiveWaypoints(job, waypoints, problem);
    if (received != 0 || !waypoints.empty() || asked == kTimesAsked) return received;
    const int rested = BringToRest(job.link, kBeforeAskingAgain_ms);
    if (rested != 0) return rested;
  }
}

int ReadWaypointsJob(Job& job) {
  ProductData product;
  const int identified = ReadProductData(job, product);
  return identified != 0 ? identified : ReadWaypoints(job);
}

}  // namespace skyhaul::flytec
