#include <gmock/gmock.h>

#include "core/units.h"
#include "formats/gpx/read_gpx.h"
#include "formats/gpx/write_gpx.h"
#include "tests/formats/read_text.h"
#include "tests/formats/sample_waypoints.h"

namespace skyhaul::gpx {
namespace {

using testing::HasSubstr;

TEST(GpxRead, TakesVersion10AndItsElementsInAnyOrder) {
  const WaypointFile file = ReadGood(
      Read,
      "<?xml version=\"1.0\"?>\n"
      "<gpx version=\"1.0\" creator=\"x\" xmlns=\"http://www.topografix.com/GPX/1/0\">\n"
      "<bounds minlat=\"1\"/>\n"
      "<wpt lon='-55.469114324000003' lat='+34.5'><name> 001 </name><ele>39.06</ele>"
      "<cmt>only a comment</cmt><sym>airfield</sym><time>2024-05-01T12:34:56Z</time></wpt>\n"
      "<wpt lat=\"1\" lon=\"2\"/>\n"
      "<trk><trkseg><trkpt lat=\"1\" lon=\"2\"/></trkseg></trk></gpx>");
  ASSERT_EQ(file.waypoints.size(), 2U);
  const FileWaypoint& first = file.waypoints[0];
  EXPECT_NEAR(SemicirclesToDegrees(first.lat), 34.5, 1e-7);
  EXPECT_NEAR(SemicirclesToDegrees(first.lon), -55.469114324, 1e-7);
  EXPECT_EQ(first.altitude_m, 39.06);
  EXPECT_EQ(first.name, "001");
  EXPECT_EQ(first.description, "only a comment");
  EXPECT_EQ(first.type, kWaypointAirfield);
  EXPECT_EQ(first.time, kMay2024);
  EXPECT_TRUE(file.notes.empty());
}

TEST(GpxRead, TakesPrefixesEncodingsAndCharacterNumbers) {
  const std::string body = "<g:gpx xmlns:g=\"u\"><g:wpt lat=\"1\" lon=\"2\"><g:name>";
  const std::string end = "</g:name></g:wpt></g:gpx>";
  std::string utf16 = "\xFF\xFE";
  const std::string ascii = body + "UTF16" + end;
  for (const char c : ascii) utf16 += {c, '\0'};
  EXPECT_TRUE(LooksLike(utf16));
  const std::pair<std::string, const char*> cases[] = {
      {"\xEF\xBB\xBF" + body + "Zürich" + end, "Zürich"},
      {"<?xml version='1.0' encoding='windows-1252'?>" + body + "Z\xFCrich \x80" + end, "Zürich €"},
      {body + "Z&#xFC;rich <![CDATA[<&]]>" + end, "Zürich <&"},
      {body + "<![CDATA[<a>&b]]>" + end, "<a>&b"},
      {utf16, "UTF16"},
  };
  for (const auto& [text, name] : cases) {
    EXPECT_EQ(ReadGood(Read, text).waypoints.at(0).name, name);
  }
}

TEST(GpxRead, FollowsNoEntities) {
  const WaypointFile file =
      ReadGood(Read,
               "<!DOCTYPE gpx [<!ENTITY a \"aaaaaaaaaa\"><!ENTITY b \"&a;&a;&a;&a;\">"
               "<!ENTITY f SYSTEM \"file:///etc/passwd\">]>"
               "<gpx><wpt lat=\"1\" lon=\"2\"><name>&b;</name><desc>&f;</desc></wpt></gpx>");
  EXPECT_EQ(file.waypoints.at(0).name, "&b;");
  EXPECT_EQ(file.waypoints.at(0).description, "&f;");
}

TEST(GpxRead, SurvivesDeepNesting) {
  std::string deep = "<gpx>";
  for (int i = 0; i < 300000; ++i) deep += "<a>";
  EXPECT_THAT(ReadBad(Read, deep), HasSubstr("Format error on line 1: "));
}

TEST(GpxRead, NotesWhatItCannotRead) {
  const WaypointFile file =
      ReadGood(Read,
               "<gpx>\n"
               "<wpt lat=\"1\" lon=\"2\"><ele>high</ele><time>noon</time><name>A</name></wpt>\n"
               "<wpt lat=\"1\"/>\n"
               "<wpt lat=\"90.5\" lon=\"2\"/>\n"
               "<wpt lat=\"1,5\" lon=\"2\"/>\n"
               "</gpx>");
  ASSERT_EQ(file.waypoints.size(), 1U);
  EXPECT_EQ(file.waypoints[0].altitude_m, 0);
  EXPECT_EQ(file.waypoints[0].time, 0U);
  EXPECT_THAT(file.notes, testing::ElementsAre(
                              "Line 2: the waypoint's altitude cannot be read",
                              "Line 2: the waypoint's time cannot be read",
                              "Line 3: waypoint without a position that can be read, skipped",
                              "Line 4: waypoint with a position that is not on the globe, skipped",
                              "Line 5: waypoint without a position that can be read, skipped"));
}

TEST(GpxRead, RefusesWithTheLine) {
  const std::pair<const char*, const char*> cases[] = {
      {"", "Format error on line 1: "},
      {"G  WGS 84\r\nU  1\r\n", "Format error on line 1: not a GPX file"},
      {"<gpx>\n<wpt lat=\"1\" lon=\"2\">\n<name>A</nam>\n</wpt></gpx>", "Format error on line 3: "},
      {"<gpx>\n<wpt lat=\"1\" lon=\"2\"/>\n", "Format error on line"},
      {"<?xml version=\"1.0\"?>\n<kml><wpt lat=\"1\" lon=\"2\"/></kml>",
       "Format error on line 2: the file is <kml>, not <gpx>"},
      {"<gpx>\n<rte><rtept lat=\"1\" lon=\"2\"/></rte></gpx>",
       "Format error on line 1: only routes or tracks, no waypoints"},
      {"<gpx>\n<wpt lat=\"a\" lon=\"2\"/></gpx>",
       "Format error on line 1: none of the waypoints can be read"},
  };
  for (const auto& [text, message] : cases) {
    EXPECT_THAT(ReadBad(Read, text), HasSubstr(message));
  }
}

TEST(GpxLooksLike, GoesByTheFirstElement) {
  for (const char* text : {"\xEF\xBB\xBF<?xml version=\"1.0\"?>\n<!-- <kml> --><!DOCTYPE gpx>"
                           "<gpx\nversion='1'>",
                           "<x:gpx>"}) {
    EXPECT_TRUE(LooksLike(text)) << text;
  }
  for (const char* text : {"<?xml version=\"1.0\"?><kml><gpx>", "<gpxx>", "<!-- <gpx>", "<", ""}) {
    EXPECT_FALSE(LooksLike(text)) << text;
  }
}

TEST(GpxWrite, ComesBack) {
  std::vector<FileWaypoint> waypoints = SampleWaypoints();
  waypoints.push_back(
      {.altitude_m = -0.125, .name = "]]> &amp; \"<wpt>\"", .description = "a\nb\x1b"});
  const std::string xml = Write(waypoints);
  EXPECT_TRUE(LooksLike(xml));
  const WaypointFile file = ReadGood(Read, xml);
  EXPECT_TRUE(file.notes.empty());
  waypoints.back().description = "a b";
  ExpectSameWaypoints(file.waypoints, waypoints, {});
  EXPECT_TRUE(ReadGood(Read, Write({})).waypoints.empty());
}

// The order of the elements is the schema's, and the easternmost longitude is below 180.
TEST(GpxWrite, WritesWhatTheSchemaWants) {
  const FileWaypoint waypoints[] = {{.lat = 1 << 30,
                                     .lon = INT32_MAX,
                                     .altitude_m = -1.5,
                                     .name = "A",
                                     .description = "B",
                                     .comment = "C",
                                     .time = kMay2024,
                                     .type = kWaypointAirfield}};
  EXPECT_THAT(Write(waypoints),
              testing::EndsWith("<wpt lat=\"90.00000000\" lon=\"179.99999992\">\n"
                                "<ele>-1.500</ele>\n<time>2024-05-01T12:34:56Z</time>\n"
                                "<name>A</name>\n<cmt>C</cmt>\n<desc>B</desc>\n"
                                "<sym>Airport</sym>\n<type>Airport</type>\n</wpt>\n</gpx>\n"));
}

}  // namespace
}  // namespace skyhaul::gpx
