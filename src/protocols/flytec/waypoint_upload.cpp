#include "protocols/flytec/waypoint_upload.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "core/count_message.h"
#include "core/text/printable.h"
#include "core/units.h"
#include "protocols/flytec/field_text.h"
#include "protocols/flytec/product_data.h"
#include "protocols/sentence/checksum.h"
#include "protocols/sentence/positions.h"
#include "protocols/sentence/write_sentence.h"

namespace skyhaul::flytec {

namespace {

// Nothing acknowledges a waypoint, so the instrument gets time to store it.
constexpr uint32_t kAfterWaypoint_ms = 300;
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

// Says how many names are not sent as they are.
std::vector<std::string> NamesToSend(const Job& job) {
  std::vector<std::string> names;
  for (const FileWaypoint& waypoint : job.data.waypoints_to_send) {
    names.push_back(FullName(waypoint));
  }
  uint32_t changed = 0;
  std::vector<std::string> fields = NameFields(names, changed);
  if (changed > 0) {
    ShowStatus(job.operation,
               FormatCountMessage("% names were changed to fit % characters", changed, kNameWidth));
  }
  return fields;
}

// Sends one waypoint. Returns 0 or a negative number after a message or status.
int SendWaypoint(Job& job, const FileWaypoint& waypoint, const std::string& name) {
  // The status that counts the waypoints sent is shown by the caller instead of that of an abort.
  if (job.operation.aborted) return kAborted;
  if (WriteSentence(job.link, WaypointSentence(waypoint, name)) != 0) {
    ShowMessage(job.operation, "COM port write error", kTitle);
    return -1;
  }
  const uint32_t sent = ++job.data.sent;
  const auto total = static_cast<uint32_t>(job.data.waypoints_to_send.size());
  ShowStatus(job.operation, FormatCountMessage("Waypoint % sent", sent));
  ShowProgress(job.operation, FormatCountMessage("Sent wpt %/%", sent, total),
               static_cast<int>(uint64_t{sent} * 100 / total));
  Pause(job.link, kAfterWaypoint_ms);
  return 0;
}

int SendWaypoints(Job& job) {
  const std::vector<std::string> names = NamesToSend(job);
  for (size_t i = 0; i < names.size(); ++i) {
    const FileWaypoint& waypoint = job.data.waypoints_to_send[i];
    const std::string obstacle = WaypointObstacle(waypoint);
    if (!obstacle.empty()) {
      ShowMessage(job.operation, "Waypoint " + FullName(waypoint) + " " + obstacle, kTitle);
      // One that cannot be sent must not keep the others from the instrument.
      continue;
    }
    const int sent = SendWaypoint(job, waypoint, names[i]);
    if (sent != 0) return End(job, sent);
  }
  return End(job, static_cast<int>(job.data.sent));
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
  ProductData product;
  const int identified = ReadProductData(job, product);
  return identified != 0 ? identified : SendWaypoints(job);
}

}  // namespace skyhaul::flytec
