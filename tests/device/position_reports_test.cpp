#include "device/position_reports.h"

#include <gtest/gtest.h>

#include "core/units.h"
#include "instruments/bench.h"

namespace skyhaul {
namespace {

TEST(PositionReports, ReportsAtTheIntervalOfFlightTime) {
  using Texts = std::vector<std::string>;
  const std::tuple<const char*, uint32_t, Texts> cases[] = {
      {"", 10, {}},
      {"me", 0, {}},
      {"me", 10, {"me: Pos=47.000000,-11.500000,124", "me: Pos=47.000000,-11.500000,125"}},
  };
  for (const auto& [client, interval_s, sent] : cases) {
    Bench bench;
    const Platform platform = BenchPlatform(bench);
    Job job;
    job.link.platform = &platform;
    job.reports = {.client = client, .interval_s = interval_s};
    TrackPoint point = {.lat = RadiansToSemicircles(47 / kDegreesPerRadian),
                        .lon = RadiansToSemicircles(-11.5 / kDegreesPerRadian),
                        .gps_alt_dm = 1230};
    uint32_t last_time = 0;
    for (const uint32_t time : {1000U, 1009U, 1010U, 1019U}) {
      point.time = time;
      point.gps_alt_dm += 5;
      ReportPosition(job, point, last_time);
    }
    EXPECT_EQ(bench.told, sent);
  }
}

}  // namespace
}  // namespace skyhaul
