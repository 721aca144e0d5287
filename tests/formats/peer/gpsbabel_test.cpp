// gpsbabel reads the files that we write and must find the same points in them.

#include <gtest/gtest.h>

#include <cstdlib>
#include <pugixml.hpp>

#include "core/text/date_time.h"
#include "core/units.h"
#include "formats/gpx/write_gpx.h"
#include "formats/kml/kml_track.h"
#include "formats/ozi/ozi_track.h"
#include "formats/ozi/write_ozi.h"
#include "platform/file.h"
#include "tests/formats/sample_waypoints.h"
#include "tests/support/scratch_folder.h"

namespace skyhaul {
namespace {

// What both sides know of a point.
struct Point {
  double lat_deg = 0;
  double lon_deg = 0;
  double altitude_m = 0;
  uint32_t time = 0;
  std::string name = {};
};

bool Runs(const std::string& command) {
  return std::system(command.c_str()) == 0;
}

void CollectPoints(const pugi::xml_node& node, std::string_view kind, std::vector<Point>& points) {
  for (const pugi::xml_node& child : node.children()) {
    if (child.name() != kind) {
      CollectPoints(child, kind, points);
      continue;
    }
    points.push_back({.lat_deg = child.attribute("lat").as_double(),
                      .lon_deg = child.attribute("lon").as_double(),
                      .altitude_m = child.child("ele").text().as_double(),
                      .time = ReadIsoTime(child.child_value("time")),
                      .name = child.child_value("name")});
  }
}

// Has gpsbabel turn a file into GPX. Returns the points of a kind, "wpt" or "trkpt".
std::vector<Point> Converted(const std::string& format, const std::string& text,
                             std::string_view kind) {
  const ScratchFolder folder;
  const std::string in = folder.File("in");
  const std::string out = folder.File("out.gpx");
  EXPECT_EQ(WriteWholeFile(in, text, IfExists::kRefuse).problem, FileProblem::kNone);
  EXPECT_TRUE(Runs("gpsbabel -i '" + format + "' -f '" + in + "' -o gpx -F '" + out + "'"));
  pugi::xml_document document;
  EXPECT_TRUE(document.load_file(out.c_str()));
  std::vector<Point> points;
  CollectPoints(document, kind, points);
  return points;
}

// Skips the test without gpsbabel.
void ExpectFound(const std::string& format, const std::string& text, std::string_view kind,
                 const std::vector<Point>& expected) {
  if (!Runs("gpsbabel -^1 2>/dev/null | grep -q '\t" + format + "\t'")) {
    GTEST_SKIP() << "gpsbabel, if installed, does not know " << format;
  }
  const std::vector<Point> found = Converted(format, text, kind);
  ASSERT_EQ(found.size(), expected.size());
  for (size_t i = 0; i < found.size(); ++i) {
    EXPECT_NEAR(found[i].lat_deg, expected[i].lat_deg, 1e-5) << i;
    EXPECT_NEAR(found[i].lon_deg, expected[i].lon_deg, 1e-5) << i;
    EXPECT_NEAR(found[i].altitude_m, expected[i].altitude_m, 1) << i;
    EXPECT_EQ(found[i].time, expected[i].time) << i;
    EXPECT_EQ(found[i].name, expected[i].name) << i;
  }
}

std::vector<Point> Expected(const std::vector<FileWaypoint>& waypoints) {
  std::vector<Point> points;
  for (const FileWaypoint& waypoint : waypoints) {
    points.push_back({.lat_deg = SemicirclesToDegrees(waypoint.lat),
                      .lon_deg = SemicirclesToDegrees(waypoint.lon),
                      .altitude_m = waypoint.altitude_m,
                      .time = waypoint.time,
                      .name = waypoint.name});
  }
  return points;
}

// A flight around the Matterhorn with a gap, a fix a second.
std::vector<TrackPoint> Flight() {
  constexpr int kFixes = 500;
  std::vector<TrackPoint> points;
  for (int i = 0; i < kFixes; ++i) {
    points.push_back({.segment_start = i == 0 || i == 300 ? 1U : 0U,
                      .time = kMay2024 + static_cast<uint32_t>(i),
                      .lat = 548471234 + i * 1777 % 20000,
                      .lon = 91356789 - i * 991,
                      .gps_alt_dm = 25000 + i * 37 % 9000,
                      .pressure_alt = 1});
  }
  return points;
}

std::vector<Point> Expected(const std::vector<TrackPoint>& track) {
  std::vector<Point> points;
  for (const TrackPoint& fix : track) {
    points.push_back({.lat_deg = SemicirclesToDegrees(fix.lat),
                      .lon_deg = SemicirclesToDegrees(fix.lon),
                      .altitude_m = fix.gps_alt_dm / 10.0,
                      .time = fix.time});
  }
  return points;
}

TEST(Gpsbabel, FindsTheWaypointsOfGpx) {
  ExpectFound("gpx", gpx::Write(SampleWaypoints()), "wpt", Expected(SampleWaypoints()));
}

TEST(Gpsbabel, FindsTheWaypointsOfOziExplorer) {
  ExpectFound("ozi", ozi::WriteWaypoints(SampleWaypoints()), "wpt", Expected(SampleWaypoints()));
}

TEST(Gpsbabel, FindsTheTrackOfOziExplorer) {
  ExpectFound("ozi", ozi::WriteTrack(Flight(), "Flight"), "trkpt", Expected(Flight()));
}

TEST(Gpsbabel, FindsTheTrackAndThePlacemarksOfKml) {
  const std::vector<TrackPoint> flight = Flight();
  const std::string kml = kml::WriteTrack(flight, {.name = "F", .take_off = 10, .landing = 490});
  ExpectFound("kml", kml, "trkpt", Expected(flight));
  std::vector<Point> placemarks = Expected(std::vector<TrackPoint>{flight[10], flight[490]});
  placemarks[0].name = "Take-off";
  placemarks[1].name = "Landing";
  ExpectFound("kml", kml, "wpt", placemarks);
}

}  // namespace
}  // namespace skyhaul
