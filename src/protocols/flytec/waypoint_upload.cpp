#include "protocols/flytec/waypoint_upload.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <utility>
#include <vector>

#include "core/count_message.h"
#include "core/text/printable.h"
#include "core/units.h"
#include "protocols/flytec/field_text.h"
#include "protocols/flytec/product_data.h"
#include "protocols/flytec/read_back.h"
#include "protocols/flytec/waypoint_list.h"
#include "protocols/sentence/checksum.h"
#include "protocols/sentence/positions.h"
#include "protocols/sentence/write_sentence.h"

namespace skyhaul::flytec {

namespace {

// Nothing acknowledges a waypoint, so the instrument gets time to store it.
constexpr uint32_t kAfterWaypoint_ms = 300;
constexpr uint32_t kBeforeList_ms = 1000;
constexpr const char* kTitle = "Write GPS waypoints";

// Thousandths of a minute. The pole and 180 degrees would need 90 and 180 in the degrees, which the
// instrument does not know.
constexpr int32_t kHighestLatitude = 5399999;
constexpr int32_t kHighestLongitude = 10799999;
constexpr double kLowest_m = -9999;  // five characters
constexpr double kHighest_m = 99999;

int End(const Job& job, int result) {
  ShowStatus(job.operation, FormatCountMessage("% waypoints sent", job.data.sent));
  return result;
}

// The instrument has one name of 17 characters. The description says more than a file's short name,
// which often has six.
std::string FullName(const FileWaypoint& waypoint) {
  const std::string description = OneLine(waypoint.description);
  return description.empty() ? OneLine(waypoint.name) : description;
}

// Whole metres; an altitude that is not a number counts as unknown, which is 0 on the wire.
double Altitude_m(const FileWaypoint& waypoint) {
  return std::isnan(waypoint.altitude_m) ? 0 : std::round(waypoint.altitude_m);
}

// One waypoint on its way to the instrument.
struct Outgoing {
  const FileWaypoint* waypoint = nullptr;
  std::string name;  // as its field holds it
};

// The waypoints that the instrument can hold; each of the others is named in a message. One that
// cannot be sent must not keep the others from the instrument.
std::vector<Outgoing> Sendable(const Job& job) {
  std::vector<Outgoing> sendable;
  for (const FileWaypoint& waypoint : job.data.waypoints_to_send) {
    const std::string obstacle = WaypointObstacle(waypoint);
    if (obstacle.empty()) sendable.push_back({.waypoint = &waypoint});
    if (!obstacle.empty()) {
      ShowMessage(job.operation, "Waypoint " + FullName(waypoint) + " " + obstacle, kTitle);
    }
  }
  return sendable;
}

// Says how many names are not sent as they are.
void NameThem(const Job& job, std::vector<Outgoing>& waypoints) {
  std::vector<std::string> names;
  for (const Outgoing& outgoing : waypoints) names.push_back(FullName(*outgoing.waypoint));
  uint32_t changed = 0;
  std::vector<std::string> fields = NameFields(names, changed);
  for (size_t i = 0; i < fields.size(); ++i) waypoints[i].name = std::move(fields[i]);
  if (changed > 0) {
    ShowStatus(job.operation,
               FormatCountMessage("% names were changed to fit % characters", changed, kNameWidth));
  }
}

// Sends one waypoint. Returns 0 or a negative number after a message or status.
int SendWaypoint(Job& job, const Outgoing& outgoing) {
  // The status that counts the waypoints sent is shown by the caller instead of that of an abort.
  if (job.operation.aborted) return kAborted;
  if (WriteWhenTaken(job.link, WaypointSentence(*outgoing.waypoint, outgoing.name)) != 0) {
    ShowMessage(job.operation, "COM port write error", kTitle);
    return -1;
  }
  return 0;
}

int SendWaypoints(Job& job, const std::vector<Outgoing>& waypoints) {
  const auto total = static_cast<uint32_t>(job.data.waypoints_to_send.size());
  for (const Outgoing& outgoing : waypoints) {
    const int result = SendWaypoint(job, outgoing);
    if (result != 0) return End(job, result);
    const uint32_t sent = ++job.data.sent;
    ShowStatus(job.operation, FormatCountMessage("Waypoint % sent", sent));
    ShowProgress(job.operation, FormatCountMessage("Sent wpt %/%", sent, total),
                 static_cast<int>(uint64_t{sent} * 100 / total));
    Pause(job.link, kAfterWaypoint_ms);
  }
  return End(job, static_cast<int>(job.data.sent));
}

int SendAgain(Job& job, const std::vector<Outgoing>& waypoints, const std::vector<size_t>& which) {
  for (const size_t i : which) {
    const int result = SendWaypoint(job, waypoints[i]);
    if (result != 0) return result;
    ShowProgress(job.operation, "Sent again: " + FullName(*waypoints[i].waypoint));
    Pause(job.link, kAfterWaypoint_ms);
  }
  return 0;
}

bool SameWaypoint(const Outgoing& sent, const WaypointRecord& read) {
  return TextOfField(sent.name, kNameWidth) == read.description &&
         SamePlace({sent.waypoint->lat, sent.waypoint->lon}, {read.lat, read.lon}) &&
         SameOnWire(Altitude_m(*sent.waypoint), read.altitude);
}

int ReadBackWaypoints(Job& job, const std::vector<Outgoing>& waypoints, ReadBack& back) {
  if (const int rested = BringToRest(job.link, kBeforeList_ms); rested != 0) return rested;
  std::vector<WaypointRecord> held;
  const int read = ReadWaypointList(job, held, back.problem);
  if (read != 0) return read;
  if (held.empty()) back.problem = "No waypoint came";
  back.held = held.size();
  for (size_t i = 0; i < waypoints.size(); ++i) {
    const auto same = [&](const WaypointRecord& record) {
      return SameWaypoint(waypoints[i], record);
    };
    if (std::none_of(held.begin(), held.end(), same)) back.wrong.push_back(i);
  }
  return 0;
}

int Verify(Job& job, const std::vector<Outgoing>& waypoints) {
  return VerifyUpload(
      job, {.records = "waypoints",
            .title = kTitle,
            .sent = waypoints.size(),
            .room = kWaypointRoom,
            .read = [&](ReadBack& back) { return ReadBackWaypoints(job, waypoints, back); },
            .send_again =
                [&](const std::vector<size_t>& which) { return SendAgain(job, waypoints, which); },
            .name = [&](size_t i) { return FullName(*waypoints[i].waypoint); }});
}

}  // namespace

std::string WaypointObstacle(const FileWaypoint& waypoint) {
  if (std::abs(SemicirclesToMilliminutes(waypoint.lat)) > kHighestLatitude ||
      std::abs(SemicirclesToMilliminutes(waypoint.lon)) > kHighestLongitude) {
    return "lies where the instrument knows no position";
  }
  const double altitude_m = Altitude_m(waypoint);
  if (altitude_m < kLowest_m || altitude_m > kHighest_m) {
    return "has an altitude of more than five characters";
  }
  return "";
}

std::string WaypointSentence(const FileWaypoint& waypoint, const std::string& name) {
  // $PBRWPR,4743.564,N,01121.571,E,,Urthaler Hof     ,0620*hh   the short name stays empty
  const double latitude_rad = SemicirclesToRadians(waypoint.lat);
  const double longitude_rad = SemicirclesToRadians(waypoint.lon);
  char text[kSentenceCapacity];
  (void)std::snprintf(text, sizeof text, "$PBRWPR,%s,%s,,%s,%04d",
                      FormatLatitude(latitude_rad, kMilliminutesPerRadian).c_str(),
                      FormatLongitude(longitude_rad, kMilliminutesPerRadian).c_str(), name.c_str(),
                      static_cast<int>(Altitude_m(waypoint)));
  std::string sentence = text;
  AppendNmeaChecksum(sentence);
  return sentence;
}

int WriteWaypointsJob(Job& job) {
  std::vector<Outgoing> waypoints = Sendable(job);
  // Every name is another one, so that none of them overwrites another.
  if (waypoints.size() > kWaypointRoom) {
    ShowMessage(job.operation,
                FormatCountMessage("% waypoints, but the instrument holds %: nothing was sent",
                                   static_cast<uint32_t>(waypoints.size()), kWaypointRoom),
                kTitle);
    return -1;
  }
  ProductData product;
  const int identified = ReadProductData(job, product);
  if (identified != 0) return identified;
  NameThem(job, waypoints);
  const int sent = SendWaypoints(job, waypoints);
  if (sent <= 0 || !job.verify) return sent;
  const int verified = Verify(job, waypoints);
  return verified != 0 ? verified : sent;
}

}  // namespace skyhaul::flytec
