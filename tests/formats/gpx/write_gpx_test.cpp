#include "formats/gpx/write_gpx.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <pugixml.hpp>
#include <string>
#include <vector>

#include "formats/gpx/read_gpx.h"
#include "tests/formats/values/sample_waypoints.h"

namespace skyhaul {
namespace {

TEST(WriteGpx, ComesBack) {
  std::vector<FileWaypoint> written = SampleWaypoints();
  written.push_back(
      {.altitude_m = -0.125, .name = "]]> &amp; \"<wpt>\"", .description = "a\nb\x1b"});
  const std::string xml = WriteGpx(written);
  EXPECT_TRUE(LooksLikeGpx(xml));
  WaypointFile file;
  std::string message;
  ASSERT_EQ(ReadGpx(xml, file, message), static_cast<int>(written.size())) << message;
  EXPECT_TRUE(file.notes.empty());
  written.back().description = "a b";
  for (size_t i = 0; i < written.size(); ++i) {
    const FileWaypoint& read = file.waypoints[i];
    EXPECT_EQ(read.lat, written[i].lat) << i;
    EXPECT_EQ(read.lon, written[i].lon) << i;
    EXPECT_EQ(read.altitude_m, written[i].altitude_m) << i;
    EXPECT_EQ(read.name, written[i].name);
    EXPECT_EQ(read.description, written[i].description);
    EXPECT_EQ(read.time, written[i].time) << i;
    EXPECT_EQ(read.type, written[i].type) << i;
  }
}

TEST(WriteGpx, IsValidInTheSchemasOrderAndRanges) {
  const std::vector<std::string> order = {"ele", "time", "name", "cmt", "desc", "sym", "type"};
  const std::string xml = WriteGpx(SampleWaypoints());
  pugi::xml_document document;
  ASSERT_TRUE(document.load_string(xml.c_str()));
  const pugi::xml_node root = document.document_element();
  EXPECT_STREQ(root.attribute("version").value(), "1.1");
  EXPECT_STREQ(root.attribute("xmlns").value(), "http://www.topografix.com/GPX/1/1");
  EXPECT_STRNE(root.attribute("creator").value(), "");
  for (const pugi::xml_node& waypoint : root.children()) {
    EXPECT_STREQ(waypoint.name(), "wpt");
    EXPECT_LT(waypoint.attribute("lon").as_double(), 180);
    auto place = order.begin();
    for (const pugi::xml_node& child : waypoint.children()) {
      place = std::find(place, order.end(), child.name());
      ASSERT_NE(place, order.end()) << child.name();
      ++place;
    }
  }
}

TEST(WriteGpx, WithoutWaypointsIsAnEmptyFileThatReads) {
  WaypointFile file;
  std::string message;
  EXPECT_EQ(ReadGpx(WriteGpx({}), file, message), 0) << message;
}

}  // namespace
}  // namespace skyhaul
