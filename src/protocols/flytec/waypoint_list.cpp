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
constexpr const char* kTitle = "Read GPS waypoints";

int Fail(const Job& job, const std::string& text) {
  ShowMessage(job.operation, text, kTitle);
  return -1;
}

uint32_t Now(const Job& job) {
  const ClockFunctions& clock = job.link.platform->clock;
  return TimeFromUnix(clock.unix_time_s(clock.context));
}

// Collects waypoints until the instrument is silent. Returns 0 or a negative number after its
// message.
int ReceiveWaypoints(Job& job, std::vector<WaypointRecord>& waypoints) {
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
  if (result == kPortFailed) return Fail(job, "E301 COM port read error");
  if (result == kAborted) return kAborted;
  if (error < 0) {
    return Fail(job, FormatCountMessage("E302 Format error %", static_cast<uint32_t>(-error)));
  }
  // The only other way to end without a time-out is a list that is too long.
  if (result == 0) return Fail(job, "E303 Waypoint memory allocation");
  // The silence that ends the list came before the end of a sentence.
  if (recogniser.state != WaypointState::kStart) {
    return Fail(job, "The waypoint list broke off inside a waypoint");
  }
  return 0;
}

int ReadWaypoints(Job& job) {
  if (WriteSentence(job.link, kRequestWaypoints) != 0)
    return Fail(job, "E304 COM port write error");
  std::vector<WaypointRecord> waypoints;
  const int received = ReceiveWaypoints(job, waypoints);
  if (received != 0) return received;
  const auto count = static_cast<uint32_t>(waypoints.size());
  job.data.waypoints = std::move(waypoints);
  ShowStatus(job.operation, FormatCountMessage("% waypoints received", count));
  return static_cast<int>(count);
}

}  // namespace

int ReadWaypointsJob(Job& job) {
  ProductData product;
  const int identified = ReadProductData(job, product);
  return identified != 0 ? identified : ReadWaypoints(job);
}

}  // namespace skyhaul::flytec
