// The window's toolkit sets the person's locale. Numbers in files, and those that clients get, keep
// their decimal point.

#include <gmock/gmock.h>

#include <clocale>

#include "device/position_reports.h"
#include "formats/compegps/write_compegps.h"
#include "formats/cup/write_cup.h"
#include "formats/formatgeo/write_formatgeo.h"
#include "formats/gpx/write_gpx.h"
#include "formats/igc/write_igc.h"
#include "formats/kml/kml_track.h"
#include "formats/openair/write_openair.h"
#include "formats/ozi/ozi_track.h"
#include "formats/ozi/write_ozi.h"
#include "tests/formats/waypoint_files.h"
#include "tests/support/job_bench.h"

namespace skyhaul {
namespace {

// What a client gets of a fix.
std::string Reported(const TrackPoint& point) {
  JobBench b;
  b.job.reports = {.client = "client", .interval_s = 1};
  uint32_t last_time = 0;
  ReportPosition(b.job, point, last_time);
  return b.bench.told.at(0);
}

// Every text with numbers in it, one after the other.
std::string EveryText() {
  const std::vector<FileWaypoint> waypoints = SampleWaypoints();
  const TrackPoint points[] = {
      {.segment_start = 1, .time = kMay2024, .milliseconds = 250, .lat = 7, .gps_alt_dm = 12345}};
  const CtrRecord airspaces[] = {
      {.floor = {.reference = LimitReference::kSea, .value = 0.5},
       .segments = {{.type = SegmentType::kCircle, .radius_m = 1234.5}}}};
  std::string text = cup::Write(waypoints) + ozi::WriteWaypoints(waypoints) +
                     compegps::Write(waypoints) + formatgeo::WriteGeo(waypoints) +
                     formatgeo::WriteUtm(waypoints) + gpx::Write(waypoints) +
                     kml::WriteTrack(points, {}) + ozi::WriteTrack(points, "") +
                     openair::Write(airspaces) + Reported(points[0]);
  std::string igc_text;
  igc::Write(points, {}, {.enl = true}, igc_text);
  return text + igc_text;
}

// True when a locale that writes 0,5 is there and has been set.
bool SetDecimalComma() {
  for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "de_DE", "German_Germany.1252"}) {
    const bool is_set = std::setlocale(LC_ALL, name) != nullptr;
    if (is_set && *std::localeconv()->decimal_point == ',') return true;
  }
  return false;
}

TEST(Locale, DoesNotReachTheTextsThatAreWritten) {
  const std::string before = EveryText();
  EXPECT_THAT(before, testing::HasSubstr("client: Pos=0.000001,0.000000,1235"));
  if (!SetDecimalComma()) {
    GTEST_SKIP()
        << "no locale with a decimal comma: scripts/install-deps test brings what makes one";
  }
  const std::string after = EveryText();
  std::setlocale(LC_ALL, "C");
  EXPECT_EQ(after, before);
}

}  // namespace
}  // namespace skyhaul
