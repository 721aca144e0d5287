#include "device/position_reports.h"

#include <cstdio>

#include "core/units.h"

namespace skyhaul {

void ReportPosition(const Job& job, const TrackPoint& point, uint32_t& last_time) {
  const PositionReports& reports = job.reports;
  if (reports.client.empty() || reports.interval_s == 0) return;
  if (last_time != 0 && uint64_t{point.time} < uint64_t{last_time} + reports.interval_s) return;
  last_time = point.time;
  char text[64];
  std::snprintf(text, sizeof text, "Pos=%.6f,%.6f,%d", SemicirclesToDegrees(point.lat),
                SemicirclesToDegrees(point.lon), DecimetresToMetres(point.gps_alt_dm));
  const NotifierFunctions& notifier = job.link.platform->notifier;
  notifier.send(notifier.context, reports.client, text);
}

}  // namespace skyhaul
