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
#include "tests/formats/waypoint_files.h"
#include "tests/support/scratch_folder.h"

namespace skyhaul {
namespace {

bool Runs(const std::string& command) {
  return std::system(command.c_str()) == 0;
}

// Has gpsbabel turn a file into GPX. Returns the points of a kind, "wpt" or "trkpt", as far as both
// sides know them.
std::vector<FileWaypoint> Converted(const std::string& format, const std::string& text,
                                    const std::string& kind) {
  const ScratchFolder folder;
  const std::string in = folder.File("in");
  const std::string out = folder.File("out.gpx");
  EXPECT_EQ(WriteWholeFile(in, text, IfExists::kRefuse).problem, FileProblem::kNone);
  EXPECT_TRUE(Runs("gpsbabel -i '" + format + "' -f '" + in + "' -o gpx -F '" + out + "'"));
  pugi::xml_document document;
  EXPECT_TRUE(document.load_file(out.c_str()));
  std::vector<FileWaypoint> points;
  for (const auto& found : document.select_nodes(("//" + kind).c_str())) {
    const pugi::xml_node node = found.node();
    points.push_back({.lat = DegreesToSemicircles(node.attribute("lat").as_double()),
                      .lon = DegreesToSemicircles(node.attribute("lon").as_double()),
                      .altitude_m = node.child("ele").text().as_double(),
                      .name = node.child_value("name"),
                      .time = ReadIsoTime(node.child_value("time"))});
  }
  return points;
}

// Skips the test without gpsbabel.
void ExpectFound(const std::string& format, const std::string& text, const std::string& kind,
                 std::vector<FileWaypoint> expected) {
  if (!Runs("gpsbabel -^1 2>/dev/null | grep -q '\t" + format + "\t'")) {
    GTEST_SKIP() << "gpsbabel, if installed, does not know " << format;
  }
  for (FileWaypoint& place : expected) {
    place.description.clear();
    place.type = 0;
  }
  ExpectSameWaypoints(Converted(format, text, kind), expected,
                      {.altitude_m = 1, .semicircles = 119});  // 1e-5 degrees
}

// A flight around the Matterhorn with a gap, a fix a second.
std::vector<TrackPoint> Flight() {
  std::vector<TrackPoint> points;
  for (int i = 0; i < 500; ++i) {
    points.push_back({.segment_start = i == 0 || i == 300 ? 1U : 0U,
                      .time = kMay2024 + static_cast<uint32_t>(i),
                      .lat = 548471234 + i * 1777 % 20000,
                      .lon = 91356789 - i * 991,
                      .gps_alt_dm = 25000 + i * 37 % 9000,
                      .pressure_alt = 1});
  }
  return points;
}

std::vector<FileWaypoint> Places(const std::vector<TrackPoint>& track) {
  std::vector<FileWaypoint> places;
  for (const TrackPoint& fix : track) {
    places.push_back(
        {.lat = fix.lat, .lon = fix.lon, .altitude_m = fix.gps_alt_dm / 10.0, .time = fix.time});
  }
  return places;
}

TEST(Gpsbabel, FindsTheWaypointsOfGpx) {
  ExpectFound("gpx", gpx::Write(SampleWaypoints()), "wpt", SampleWaypoints());
}

TEST(Gpsbabel, FindsTheWaypointsOfOziExplorer) {
  ExpectFound("ozi", ozi::WriteWaypoints(SampleWaypoints()), "wpt", SampleWaypoints());
}

TEST(Gpsbabel, FindsTheTrackOfOziExplorer) {
  ExpectFound("ozi", ozi::WriteTrack(Flight(), "Flight"), "trkpt", Places(Flight()));
}

TEST(Gpsbabel, FindsTheTrackAndThePlacemarksOfKml) {
  const std::vector<TrackPoint> flight = Flight();
  const std::string kml = kml::WriteTrack(flight, {.name = "F", .take_off = 10, .landing = 490});
  ExpectFound("kml", kml, "trkpt", Places(flight));
  std::vector<FileWaypoint> placemarks = Places({flight[10], flight[490]});
  placemarks[0].name = "Take-off";
  placemarks[1].name = "Landing";
  ExpectFound("kml", kml, "wpt", placemarks);
}

}  // namespace
}  // namespace skyhaul
