#include "device/position_reports.h"

#include <string>

#include "core/text/numbers.h"
#include "core/units.h"

namespace skyhaul {

void ReportPosition(const Job& job, const TrackPoint& point, uint32_t& last_time) {
  const PositionReports& reports = job.reports;
  if (reports.client.empty() || reports.interval_s == 0) return;
  // In 64 bits: at the scale's end the sum would wrap and every fix would be reported.
  if (last_time != 0 && uint64_t{point.time} < uint64_t{last_time} + reports.interval_s) return;
  last_time = point.time;
  // "Pos=46.123457,7.123456,1234"
  const std::string text = "Pos=" + FixedText(SemicirclesToDegrees(point.lat), 6) + ',' +
                           FixedText(SemicirclesToDegrees(point.lon), 6) + ',' +
                           std::to_string(DecimetresToMetres(point.gps_alt_dm));
  const NotifierFunctions& notifier = job.link.platform->notifier;
  // The result does not matter: a client that missed this position gets the next one.
  notifier.send(notifier.context, reports.client, text);
}

}  // namespace skyhaul
