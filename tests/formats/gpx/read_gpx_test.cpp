#include "formats/gpx/read_gpx.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "core/units.h"
#include "tests/formats/values/sample_waypoints.h"

namespace skyhaul {
namespace {

using testing::HasSubstr;

WaypointFile ReadGood(const std::string& text) {
  WaypointFile file;
  std::string message = "left over";
  const int count = ReadGpx(text, file, message);
  EXPECT_EQ(count, static_cast<int>(file.waypoints.size()));
  EXPECT_EQ(message, "");
  return file;
}

std::string ReadBad(const std::string& text) {
  WaypointFile file = {.waypoints = {{}}, .notes = {"old"}};
  std::string message;
  EXPECT_EQ(ReadGpx(text, file, message), -1) << text;
  EXPECT_TRUE(file.waypoints.empty() && file.notes.empty());
  return message;
}

TEST(ReadGpx, TakesVersion10AndItsElementsInAnyOrder) {
  const WaypointFile file = ReadGood(
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

TEST(ReadGpx, TakesPrefixesEncodingsAndCharacterNumbers) {
  const std::string body = "<g:gpx xmlns:g=\"u\"><g:wpt lat=\"1\" lon=\"2\"><g:name>";
  const std::string end = "</g:name></g:wpt></g:gpx>";
  EXPECT_EQ(ReadGood("\xEF\xBB\xBF" + body + "Zürich" + end).waypoints.at(0).name, "Zürich");
  EXPECT_EQ(
      ReadGood("<?xml version='1.0' encoding='windows-1252'?>" + body + "Z\xFCrich \x80" + end)
          .waypoints.at(0)
          .name,
      "Zürich €");
  EXPECT_EQ(ReadGood(body + "Z&#xFC;rich <![CDATA[<&]]>" + end).waypoints.at(0).name, "Zürich <&");
  EXPECT_EQ(ReadGood(body + "<![CDATA[<a>&b]]>" + end).waypoints.at(0).name, "<a>&b");

  std::string utf16 = "\xFF\xFE";
  const std::string ascii = body + "UTF16" + end;
  for (const char c : ascii) utf16 += {c, '\0'};
  EXPECT_TRUE(LooksLikeGpx(utf16));
  EXPECT_EQ(ReadGood(utf16).waypoints.at(0).name, "UTF16");
}

TEST(ReadGpx, FollowsNoEntities) {
  const WaypointFile file = ReadGood(
      "<!DOCTYPE gpx [<!ENTITY a \"aaaaaaaaaa\"><!ENTITY b \"&a;&a;&a;&a;\">"
      "<!ENTITY f SYSTEM \"file:///etc/passwd\">]>"
      "<gpx><wpt lat=\"1\" lon=\"2\"><name>&b;</name><desc>&f;</desc></wpt></gpx>");
  ASSERT_EQ(file.waypoints.size(), 1U);
  EXPECT_EQ(file.waypoints[0].name, "&b;");
  EXPECT_EQ(file.waypoints[0].description, "&f;");
}

TEST(ReadGpx, SurvivesDeepNesting) {
  std::string deep = "<gpx>";
  for (int i = 0; i < 300000; ++i) deep += "<a>";
  EXPECT_THAT(ReadBad(deep), HasSubstr("Format error on line 1: "));
}

TEST(ReadGpx, NotesWhatItCannotRead) {
  const WaypointFile file = ReadGood(
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

TEST(ReadGpx, RefusesWithTheLine) {
  const struct {
    const char* text;
    const char* message;
  } cases[] = {
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
  for (const auto& item : cases) EXPECT_THAT(ReadBad(item.text), HasSubstr(item.message));
}

TEST(LooksLikeGpx, GoesByTheFirstElement) {
  const struct {
    const char* text;
    bool looks;
  } cases[] = {
      {"<gpx>", true},
      {"\xEF\xBB\xBF<?xml version=\"1.0\"?>\n<!-- <kml> --><!DOCTYPE gpx><gpx\nversion='1'>", true},
      {"<x:gpx>", true},
      {"<?xml version=\"1.0\"?><kml><gpx>", false},
      {"<gpxx>", false},
      {"<!-- <gpx>", false},
      {"<", false},
      {"", false},
  };
  for (const auto& item : cases) EXPECT_EQ(LooksLikeGpx(item.text), item.looks) << item.text;
}

}  // namespace
}  // namespace skyhaul
