#include <gmock/gmock.h>

#include "formats/gpx/read_gpx.h"
#include "formats/gpx/write_gpx.h"
#include "tests/formats/waypoint_files.h"

namespace skyhaul::gpx {
namespace {

constexpr WaypointReader kReader = {LooksLike, Read};

TEST(GpxRead, TakesVersion10ItsElementsInAnyOrderAndNotesWhatItCannotRead) {
  ExpectShown(
      kReader,
      {{"<?xml version=\"1.0\"?>\n"
        "<gpx version=\"1.0\" creator=\"x\" xmlns=\"http://www.topografix.com/GPX/1/0\">\n"
        "<bounds minlat=\"1\"/>\n"
        "<wpt lon='-55.469114324000003' lat='+34.5'><name> 001 </name><ele>39.06</ele>"
        "<cmt>only a comment</cmt><sym>airfield</sym><time>2024-05-01T12:34:56Z</time></wpt>\n"
        "<wpt lat=\"1\" lon=\"2\"/>\n"
        "<trk><trkseg><trkpt lat=\"1\" lon=\"2\"/></trkseg></trk></gpx>",
        "34.5 -55.4691143 39.06 001|only a comment @1083501296 type 1\n"
        "1 2 0 \n"},
       {"<gpx>\n"
        "<wpt lat=\"1\" lon=\"2\"><ele>high</ele><time>noon</time><name>A</name></wpt>\n"
        "<wpt lat=\"1\"/>\n"
        "<wpt lat=\"90.5\" lon=\"2\"/>\n"
        "<wpt lat=\"1,5\" lon=\"2\"/>\n"
        "</gpx>",
        "1 2 0 A\n"
        "Line 2: the waypoint's altitude cannot be read\n"
        "Line 2: the waypoint's time cannot be read\n"
        "Line 3: waypoint without a position that can be read, skipped\n"
        "Line 4: waypoint with a position that is not on the globe, skipped\n"
        "Line 5: waypoint without a position that can be read, skipped\n"}});
}

TEST(GpxRead, TakesPrefixesEncodingsAndCharacterNumbersButFollowsNoEntities) {
  const std::string body = "<g:gpx xmlns:g=\"u\"><g:wpt lat=\"1\" lon=\"2\"><g:name>";
  const std::string end = "</g:name></g:wpt></g:gpx>";
  std::string utf16 = "\xFF\xFE";
  std::string plain = body;
  plain.append("UTF16").append(end);
  for (const char c : plain) utf16 += {c, '\0'};
  ExpectShown(
      kReader,
      {{"\xEF\xBB\xBF" + body + "Zürich" + end, "1 2 0 Zürich\n"},
       {"<?xml version='1.0' encoding='windows-1252'?>" + body + "Z\xFCrich \x80" + end,
        "1 2 0 Zürich €\n"},
       {body + "Z&#xFC;rich <![CDATA[<&]]>" + end, "1 2 0 Zürich <&\n"},
       {"\xEF\xBB\xBF<?xml version=\"1.0\"?>\n<!-- <kml> --><!DOCTYPE gpx><gpx\nversion='1'/>", ""},
       {utf16, "1 2 0 UTF16\n"},
       {"<!DOCTYPE gpx [<!ENTITY a \"aaaaaaaaaa\"><!ENTITY b \"&a;&a;&a;&a;\">"
        "<!ENTITY f SYSTEM \"file:///etc/passwd\">]>"
        "<gpx><wpt lat=\"1\" lon=\"2\"><name>&b;</name><desc>&f;</desc></wpt></gpx>",
        "1 2 0 &b;|&f;\n"}});
}

TEST(GpxRead, RefusesWithTheLine) {
  std::string deep = "<gpx>";
  for (int i = 0; i < 300000; ++i) deep += "<a>";
  const std::string error = "Format error on line ";
  ExpectShown(kReader, {
                           {deep, error + "1: Start-end tags mismatch"},
                           {"<gpxx/>", error + "1: the file is <gpxx>, not <gpx>"},
                           {"<", error + "1: Could not determine tag type"},
                           {"", error + "1: not a GPX file"},
                           {"<gpx>\n<wpt lat=\"1\" lon=\"2\">\n<name>A</nam>\n</wpt></gpx>",
                            error + "3: Start-end tags mismatch"},
                           {"<gpx>\n<rte><rtept lat=\"1\" lon=\"2\"/></rte></gpx>",
                            error + "1: only routes or tracks, no waypoints"},
                           {"<gpx>\n<wpt lat=\"a\" lon=\"2\"/></gpx>",
                            error + "1: none of the waypoints can be read"},
                       });
  EXPECT_FALSE(LooksLike("<!-- <gpx>"));
}

TEST(GpxWrite, ComesBack) {
  std::vector<FileWaypoint> waypoints = SampleWaypoints();
  waypoints.push_back({.altitude_m = -0.125, .name = "]]> &amp; \"<wpt>\"", .description = "a b"});
  ExpectComeBack(kReader, Write, waypoints, {});
}

// The order of the elements is the schema's, and the easternmost longitude is below 180.
TEST(GpxWrite, WritesWhatTheSchemaWants) {
  const FileWaypoint waypoints[] = {{.lat = 1 << 30,
                                     .lon = INT32_MAX,
                                     .altitude_m = -1.5,
                                     .name = "A",
                                     .description = "B\nb\x1b",
                                     .comment = "C",
                                     .time = kMay2024,
                                     .type = kWaypointAirfield}};
  EXPECT_THAT(Write(waypoints),
              testing::EndsWith("<wpt lat=\"90.00000000\" lon=\"179.99999992\">\n"
                                "<ele>-1.500</ele>\n<time>2024-05-01T12:34:56Z</time>\n"
                                "<name>A</name>\n<cmt>C</cmt>\n<desc>B b</desc>\n"
                                "<sym>Airport</sym>\n<type>Airport</type>\n</wpt>\n</gpx>\n"));
}

}  // namespace
}  // namespace skyhaul::gpx
