#include "formats/kml/kml_track.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <map>
#include <pugixml.hpp>

#include "tests/formats/sample_waypoints.h"

namespace skyhaul {
namespace {

using Names = std::vector<std::string>;

std::vector<TrackPoint> Flight() {
  constexpr int32_t kLat = 550274193;  // 46.12345
  constexpr int32_t kLon = 84986069;   // 7.12345
  return {{1, kMay2024, 0, kLat, -kLon, 10005, 7},
          {0, kMay2024 + 1, 50, kLat, kLon, -12},
          {0, kMay2024 + 2, 0, -kLat, kLon, 0}};
}

// What may stand in an element, in the order in which the schemas want it.
const std::map<std::string, Names> kSchemaOrder = {
    {"kml", {"Document"}},
    {"Document", {"name", "description", "Style", "Placemark"}},
    {"Placemark",
     {"name", "description", "TimeStamp", "styleUrl", "Point", "gx:Track", "gx:MultiTrack"}},
    {"Style", {"LineStyle"}},
    {"LineStyle", {"color", "width"}},
    {"TimeStamp", {"when"}},
    {"Point", {"altitudeMode", "coordinates"}},
    {"gx:MultiTrack", {"altitudeMode", "gx:interpolate", "gx:Track"}},
    {"gx:Track", {"altitudeMode", "when", "gx:coord"}},
};

void ExpectSchemaOrder(const pugi::xml_node& node) {
  if (node.first_child().type() != pugi::node_element) return;
  const auto entry = kSchemaOrder.find(node.name());
  ASSERT_NE(entry, kSchemaOrder.end()) << node.name();
  auto place = entry->second.begin();
  for (const pugi::xml_node& child : node.children()) {
    place = std::find(place, entry->second.end(), child.name());
    ASSERT_NE(place, entry->second.end()) << child.name() << " in " << node.name();
    ExpectSchemaOrder(child);
  }
}

void Load(pugi::xml_document& document, const std::string& xml) {
  const pugi::xml_parse_result result = document.load_string(xml.c_str());
  ASSERT_TRUE(result) << result.description();
  ExpectSchemaOrder(document.document_element());
}

Names Texts(const pugi::xml_node& parent, const char* name) {
  Names texts;
  for (const pugi::xml_node& child : parent.children(name)) texts.emplace_back(child.child_value());
  return texts;
}

TEST(KmlTrack, HasTimesPositionsAndPlacemarks) {
  pugi::xml_document document;
  Load(document,
       WriteKmlTrack(Flight(),
                     {.name = "A & <B>", .description = "]]>\"ü\"", .take_off = 1, .landing = 2}));
  const pugi::xml_node folder = document.child("kml").child("Document");
  EXPECT_STREQ(folder.child_value("name"), "A & <B>");
  EXPECT_STREQ(folder.child_value("description"), "]]>\"ü\"");
  const pugi::xml_node track = folder.child("Placemark").child("gx:Track");
  EXPECT_STREQ(track.child_value("altitudeMode"), "absolute");
  EXPECT_THAT(Texts(track, "when"),
              testing::ElementsAre("2024-05-01T12:34:56Z", "2024-05-01T12:34:57.050Z",
                                   "2024-05-01T12:34:58Z"));
  EXPECT_THAT(Texts(track, "gx:coord"),
              testing::ElementsAre("-7.1234500 46.1234500 1000.5", "7.1234500 46.1234500 -1.2",
                                   "7.1234500 -46.1234500 0.0"));
  const pugi::xml_node take_off = folder.child("Placemark").next_sibling();
  EXPECT_STREQ(take_off.child_value("name"), "Take-off");
  EXPECT_STREQ(take_off.child("TimeStamp").child_value("when"), "2024-05-01T12:34:57.050Z");
  EXPECT_STREQ(take_off.child("Point").child_value("coordinates"), "7.1234500,46.1234500,-1.2");
  const pugi::xml_node landing = take_off.next_sibling();
  EXPECT_STREQ(landing.child_value("name"), "Landing");
  EXPECT_STREQ(landing.child("Point").child_value("coordinates"), "7.1234500,-46.1234500,0.0");
  EXPECT_FALSE(landing.next_sibling());
}

TEST(KmlTrack, LeavesGapsBetweenSegments) {
  std::vector<TrackPoint> points = Flight();
  points[1].segment_start = 1;
  pugi::xml_document document;
  Load(document, WriteKmlTrack(points, {}));
  const pugi::xml_node tracks =
      document.child("kml").child("Document").child("Placemark").child("gx:MultiTrack");
  std::vector<size_t> lengths;
  for (const pugi::xml_node& track : tracks.children("gx:Track")) {
    EXPECT_EQ(Texts(track, "when").size(), Texts(track, "gx:coord").size());
    lengths.push_back(Texts(track, "when").size());
  }
  EXPECT_THAT(lengths, testing::ElementsAre(1, 2));
}

TEST(KmlTrack, LeavesOutPlacemarksThatAreNotOnTheTrack) {
  const std::tuple<std::vector<TrackPoint>, KmlTrackInfo, size_t> cases[] = {
      {{}, {.take_off = 0, .landing = 0}, 0},
      {Flight(), {}, 1},
      {Flight(), {.take_off = 3, .landing = 2}, 2},
      {Flight(), {.take_off = 0}, 2},
  };
  for (const auto& [points, info, placemarks] : cases) {
    pugi::xml_document document;
    Load(document, WriteKmlTrack(points, info));
    const pugi::xml_node folder = document.child("kml").child("Document");
    EXPECT_EQ(Texts(folder, "Placemark").size(), placemarks);
  }
}

TEST(KmlTrack, TakesPressureAltitudeWhereThereIsNoOther) {
  const std::vector<TrackPoint> points = {{.segment_start = 1, .time = 1, .pressure_alt = 1234}};
  EXPECT_THAT(WriteKmlTrack(points, {}),
              testing::HasSubstr("<gx:coord>0.0000000 0.0000000 1234.0</gx:coord>"));
}

}  // namespace
}  // namespace skyhaul
