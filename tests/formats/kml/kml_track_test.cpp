#include "formats/kml/kml_track.h"

#include <gmock/gmock.h>

#include "tests/formats/waypoint_files.h"

namespace skyhaul::kml {
namespace {

using testing::HasSubstr;
using testing::Not;

std::vector<TrackPoint> Flight() {
  constexpr int32_t kLat = 550274193;  // 46.12345
  constexpr int32_t kLon = 84986069;   // 7.12345
  return {{1, kMay2024, 0, kLat, -kLon, 10005, 7},
          {1, kMay2024 + 1, 50, kLat, kLon, -12},
          {0, kMay2024 + 2, 0, -kLat, kLon, 0}};
}

// Two segments, and a landing beyond their end. The order of the elements is that of the schemas of
// KML 2.2 and of its gx extension.
TEST(KmlTrack, HasTimesPositionsAndPlacemarks) {
  EXPECT_EQ(
      WriteTrack(Flight(), {.name = "A & <B>", .description = "ü", .take_off = 1, .landing = 3}),
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<kml xmlns=\"http://www.opengis.net/kml/2.2\""
      " xmlns:gx=\"http://www.google.com/kml/ext/2.2\">\n<Document>\n"
      "<name>A &amp; &lt;B&gt;</name>\n<description>ü</description>\n"
      "<Style id=\"track\"><LineStyle><color>ff0000ff</color><width>2</width></LineStyle>"
      "</Style>\n"
      "<Placemark>\n<name>Track</name>\n<styleUrl>#track</styleUrl>\n"
      "<gx:MultiTrack>\n<altitudeMode>absolute</altitudeMode>\n"
      "<gx:interpolate>0</gx:interpolate>\n"
      "<gx:Track>\n<altitudeMode>absolute</altitudeMode>\n"
      "<when>2024-05-01T12:34:56Z</when>\n"
      "<gx:coord>-7.1234500 46.1234500 1000.5</gx:coord>\n</gx:Track>\n"
      "<gx:Track>\n<altitudeMode>absolute</altitudeMode>\n"
      "<when>2024-05-01T12:34:57.050Z</when>\n"
      "<when>2024-05-01T12:34:58Z</when>\n"
      "<gx:coord>7.1234500 46.1234500 -1.2</gx:coord>\n"
      "<gx:coord>7.1234500 -46.1234500 0.0</gx:coord>\n"
      "</gx:Track>\n</gx:MultiTrack>\n</Placemark>\n"
      "<Placemark>\n<name>Take-off</name>\n"
      "<TimeStamp><when>2024-05-01T12:34:57.050Z</when>\n</TimeStamp>\n"
      "<Point><altitudeMode>absolute</altitudeMode>"
      "<coordinates>7.1234500,46.1234500,-1.2</coordinates></Point>\n</Placemark>\n"
      "</Document>\n</kml>\n");
}

TEST(KmlTrack, LeavesOutPlacemarksThatAreNotOnTheTrack) {
  EXPECT_THAT(WriteTrack({}, {.take_off = 0, .landing = 0}), Not(HasSubstr("<Placemark>")));
  EXPECT_THAT(
      WriteTrack(Flight(), {.take_off = 3, .landing = 2}),
      AllOf(Not(HasSubstr("Take-off")),
            HasSubstr("<Placemark>\n<name>Landing</name>\n<TimeStamp><when>2024-05-01T12:34:58Z")));
}

TEST(KmlTrack, OfOneSegmentTakesPressureAltitudeWhereThereIsNoOther) {
  const std::vector<TrackPoint> points = {{.segment_start = 1, .time = 1, .pressure_alt = 1234}};
  EXPECT_THAT(WriteTrack(points, {}),
              AllOf(HasSubstr("<gx:coord>0.0000000 0.0000000 1234.0</gx:coord>"),
                    Not(HasSubstr("MultiTrack"))));
}

}  // namespace
}  // namespace skyhaul::kml
