#include "protocols/flytec/waypoint_list.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/count_message.h"
#include "core/time_scale.h"
#include "protocols/flytec/product_data.h"
#include "protocols/flytec/requests.h"
#include "protocols/flytec/waypoint_recogniser.h"
#include "protocols/sentence/checksum.h"
#include "protocols/sentence/write_sentence.h"

namespace skyhaul::flytec {

namespace {

constexpr uint32_t kSilence_ms = 1000;
// The instruments hold 200. One that sends more than this will not stop by itself.
constexpr size_t kMostWaypoints = 10'000;
constexpr uint32_t kAfterList_ms = 2000;
constexpr int kTimesAsked = 2;

uint32_t Now(const Job& job) {
  const ClockFunctions& clock = job.link.platform->clock;
  return TimeFromUnix(clock.unix_time_s(clock.context));
}

// What comes between the waypoints: a late answer to another request, or a waypoint whose prefix
// was damaged on the way. The recogniser passes over both.
struct Between {
  std::string line;
  bool damage = false;
};

void EndBetween(Between& between) {
  // $PBRSNP,6030,ANNA MUSTER      ,01001,3.30*0E
  const std::string_view line = between.line;
  const bool sentence = line.starts_with('$') && line.find('*') != line.npos;
  if (!line.empty() && (!sentence || ContradictsChecksum(line))) between.damage = true;
  between.line.clear();
}

void WatchBetween(Between& between, WaypointState state, uint8_t byte) {
  if (state != WaypointState::kStart && state != WaypointState::kPrefix) {
    between.line.clear();
  } else if (byte == '\n') {
    EndBetween(between);
  } else if (byte != '\r') {
    between.line += static_cast<char>(byte);
  }
}

// Collects waypoints until the instrument is silent. Returns as ReadWaypointList() does; damage
// says that more was sent than came.
int ReceiveWaypoints(Job& job, std::vector<WaypointRecord>& waypoints, std::string& problem,
                     bool& damage) {
  Between between;
  WaypointRecogniser recogniser;
  const uint32_t time = Now(job);
  int error = 0;
  const auto feed = [&](uint8_t byte) {
    error = FeedWaypointByte(recogniser, byte);
    if (error != 0) WatchBetween(between, recogniser.state, byte);
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
  EndBetween(between);
  damage = between.damage;
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
    bool damage = false;
    const int received = ReceiveWaypoints(job, waypoints, problem, damage);
    if (received != 0) return received;
    // The list announces no number, and it ends with a silence. What still comes is the rest of it.
    const int rested = BringToRest(job.link, kAfterList_ms);
    if (rested != 0) return rested;
    damage = damage || job.link.thrown_away > 0;
    if (!waypoints.empty() && !damage) return 0;
    if (asked < kTimesAsked) continue;
    if (damage) problem = "The waypoint list did not arrive whole";
    return damage ? kTimedOut : 0;
  }
}

int ReadWaypointsJob(Job& job) {
  ProductData product;
  const int identified = ReadProductData(job, product);
  return identified != 0 ? identified : ReadWaypoints(job);
}

}  // namespace skyhaul::flytec
