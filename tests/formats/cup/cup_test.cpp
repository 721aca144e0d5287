#include <gmock/gmock.h>

#include "core/units.h"
#include "formats/common/position.h"
#include "formats/cup/quoted_fields.h"
#include "formats/cup/read_cup.h"
#include "formats/cup/write_cup.h"
#include "tests/formats/read_text.h"
#include "tests/formats/sample_waypoints.h"

namespace skyhaul::cup {
namespace {

TEST(TakeQuotedRecord, SplitsFields) {
  const struct {
    std::string_view text;
    std::vector<std::string> fields;
    int lines;
    std::string_view rest;
  } cases[] = {
      {"a,b\r\nc", {"a", "b"}, 1, "c"},
      {"", {""}, 1, ""},
      {",", {"", ""}, 1, ""},
      {" a b , \"c, d\" ,e", {"a b", "c, d", "e"}, 1, ""},
      {R"("say ""Ah""","""",x"y"z)", {"say \"Ah\"", "\"", "x\"y\"z"}, 1, ""},
      {R"("a"b,c)", {"ab", "c"}, 1, ""},
      {"\"two\r\nlines\",b\nc", {"two\r\nlines", "b"}, 2, "c"},
      {"\"\n\n\"", {"\n\n"}, 3, ""},
  };
  for (const auto& test : cases) {
    std::string_view rest = test.text;
    QuotedRecord record;
    EXPECT_EQ(TakeQuotedRecord(rest, record), test.lines) << test.text;
    EXPECT_TRUE(record.closed) << test.text;
    EXPECT_EQ(record.fields, test.fields) << test.text;
    EXPECT_EQ(rest, test.rest) << test.text;
  }
}

TEST(TakeQuotedRecord, GivesUpAnOpenQuoteAfterItsLine) {
  const std::string start = "a,\"open\nnext,line\n";
  for (const std::string& text :
       {start, start + std::string(kMaxRecordLines, '\n') + '"', start + ",\"another\",field\n"}) {
    std::string_view rest = text;
    QuotedRecord record;
    EXPECT_EQ(TakeQuotedRecord(rest, record), 1);
    EXPECT_FALSE(record.closed);
    EXPECT_TRUE(rest.starts_with("next,line"));
  }
}

using testing::ElementsAre;

constexpr std::string_view kHeading =
    "name,code,country,lat,lon,elev,style,rwdir,rwlen,freq,desc\r\n";

TEST(CupRead, ReadsAWaypoint) {
  const WaypointFile file = ReadGood(
      Read,
      "name,code,country,lat,lon,elev,style,rwdir,rwlen,rwwidth,freq,desc,userdata,pics\r\n"
      "\"Lesce-Bled\",\"LJBL\",SI,4621.666N,01410.332E,504.0m,5,130,1130m,30m,123.500,"
      "\"Home, \"\"the\"\" field\",,\r\n");
  ASSERT_EQ(file.waypoints.size(), 1U);
  const FileWaypoint& waypoint = file.waypoints[0];
  EXPECT_EQ(waypoint.name, "LJBL");
  EXPECT_EQ(waypoint.description, "Lesce-Bled");
  EXPECT_NEAR(SemicirclesToDegrees(waypoint.lat), 46 + 21.666 / 60, 1e-7);
  EXPECT_NEAR(SemicirclesToDegrees(waypoint.lon), 14 + 10.332 / 60, 1e-7);
  EXPECT_EQ(waypoint.altitude_m, 504);
  EXPECT_EQ(waypoint.type, kWaypointAirfield);
  EXPECT_EQ(waypoint.time, 0U);
  EXPECT_THAT(file.notes, ElementsAre());
}

TEST(CupRead, ChoosesNameAndDescription) {
  const struct {
    std::string_view name_and_code, name, description, comment;
  } cases[] = {
      {"Start hill,A01", "A01", "Start hill", "remark"},
      {"A01,A01", "A01", "remark", ""},
      {"Z\xFCrs,", "Zürs", "remark", ""},
      {",A01", "A01", "remark", ""},
  };
  for (const auto& [name_and_code, name, description, comment] : cases) {
    const WaypointFile file = ReadGood(Read, std::string(kHeading) + std::string(name_and_code) +
                                                 ",,0000.000N,00000.000E,,1,,,,remark\n");
    ASSERT_EQ(file.waypoints.size(), 1U);
    EXPECT_EQ(file.waypoints[0].name, name);
    EXPECT_EQ(file.waypoints[0].description, description);
    EXPECT_EQ(file.waypoints[0].comment, comment);
  }
}

TEST(CupRead, ReadsPositionsElevationsAndStyles) {
  const struct {
    std::string_view fields;
    double lat_deg, lon_deg, altitude_m;
    bool airfield;
  } cases[] = {
      {"4530.000N,00730.000E,1000m,1", 45.5, 7.5, 1000, false},
      {"4530.000s,00730.000w,1000ft,2", -45.5, -7.5, 304.8, true},
      {"0000.600S,00000.600W,-12.5M,3", -.01, -.01, -12.5, false},
      {"9000.000N,18000.000W,7,4", 90, -180, 7, true},
      {"4530N,730E, 100 FT ,5", 45.5, 7.5, 30.48, true},
      {"4559.99999N,17959.99999E,,", 45.99999983, 179.99999983, 0, false},
  };
  for (const auto& test : cases) {
    const WaypointFile file =
        ReadGood(Read, std::string(kHeading) + "P,,," + std::string(test.fields) + "\n");
    ASSERT_EQ(file.waypoints.size(), 1U) << test.fields;
    EXPECT_NEAR(SemicirclesToDegrees(file.waypoints[0].lat), test.lat_deg, 1e-7) << test.fields;
    EXPECT_NEAR(SemicirclesToDegrees(file.waypoints[0].lon), test.lon_deg, 1e-7) << test.fields;
    EXPECT_NEAR(file.waypoints[0].altitude_m, test.altitude_m, 1e-9) << test.fields;
    EXPECT_EQ(file.waypoints[0].type == kWaypointAirfield, test.airfield) << test.fields;
  }
}

TEST(CupRead, SkipsBrokenLinesWithANote) {
  const WaypointFile file =
      ReadGood(Read,
               "\xEF\xBB\xBFTitle,Code,Country,Latitude,Longitude,Elevation,Style,Direction,Length,"
               "Frequency,Description\n"
               "good,,,4530.000N,00730.000E,0m,1\n"
               "\n"
               "short,,,4530.000N\n"
               "sixty,,,4560.000N,00730.000E,0m,1\n"
               "pole,,,9000.001N,00730.000E,0m,1\n"
               "swapped,,,00730.000E,4530.000N,0m,1\n"
               "sign,,,-4530.000N,00730.000E,0m,1\n"
               "unit,,,4530.000N,00730.000E,9 nm,1\n"
               "\"two\nlines\",,,4530.000N,00730.000E,0m,1\n"
               "\"open,,,4530.000N,00730.000E,0m,1\n"
               "high,,,4530.000N,00730.000E,900000m,1\n"
               "last,,,4530.000N,00730.000E,0m,1\n"
               "-----Related Tasks-----\n"
               ",\"good\",\"last\"\n");
  ASSERT_EQ(file.waypoints.size(), 5U);
  EXPECT_EQ(file.waypoints[1].name, "unit");
  EXPECT_EQ(file.waypoints[1].altitude_m, 0);
  EXPECT_EQ(file.waypoints[2].name, "two lines");
  EXPECT_EQ(file.waypoints[4].name, "last");
  EXPECT_THAT(file.notes, ElementsAre("Line 4: the position cannot be read; skipped",
                                      "Line 5: the position cannot be read; skipped",
                                      "Line 6: the position cannot be read; skipped",
                                      "Line 7: the position cannot be read; skipped",
                                      "Line 8: the position cannot be read; skipped",
                                      "Line 9: the elevation cannot be read and is taken for 0",
                                      "Line 12: a quote is not closed; skipped",
                                      "Line 13: the elevation cannot be read and is taken for 0"));
}

TEST(CupRead, ReadsAFileWithoutHeadingAndAnEmptyOne) {
  const std::string_view line = "\"A\",,CH,4530.000N,00730.000E,9m,1,,,,\"remark\"\n";
  EXPECT_TRUE(LooksLike(line));
  const WaypointFile file = ReadGood(Read, line);
  ASSERT_EQ(file.waypoints.size(), 1U);
  EXPECT_EQ(file.waypoints[0].description, "remark");
  EXPECT_EQ(ReadGood(Read, kHeading).waypoints.size(), 0U);
}

TEST(CupRead, RefusesOtherFiles) {
  const std::tuple<std::string, std::string_view, bool> cases[] = {
      {"", "Format error on line 1: not the heading of a SeeYou CUP file", false},
      {"\n\n$FormatGEO\n", "Format error on line 3: not the heading of a SeeYou CUP file", false},
      {"name,lat,height\n", "Format error on line 1: not the heading of a SeeYou CUP file", false},
      {std::string(kHeading) + "\nx\n", "Format error on line 3: the position cannot be read",
       true},
  };
  for (const auto& [text, message, looks_like_cup] : cases) {
    EXPECT_EQ(ReadBad(Read, text), message);
    EXPECT_EQ(LooksLike(text), looks_like_cup);
  }
}

TEST(CupWrite, WritesTheUsualLines) {
  const FileWaypoint waypoints[] = {
      {.lat = 1 << 29, .lon = -(1 << 29), .altitude_m = 12.34, .name = "A01"},
      {.lat = -1,
       .lon = 1193046,  // 0.0999999 degrees: rounds to 6 whole minutes
       .altitude_m = -0.96,
       .name = "LJBL",
       .description = "The \"field\",\r\nold",
       .comment = "a \"remark\"",
       .type = kWaypointAirfield},
  };
  EXPECT_EQ(Write(waypoints),
            "name,code,country,lat,lon,elev,style,rwdir,rwlen,freq,desc\r\n"
            "\"A01\",\"A01\",,4500.000N,04500.000W,12.3m,1,,,,\"\"\r\n"
            "\"The \"\"field\"\",  old\",\"LJBL\",,0000.000S,00006.000E,-1.0m,5,,,,"
            "\"a \"\"remark\"\"\"\r\n");
}

TEST(CupWrite, ComesBackWithinItsResolution) {
  const std::vector<FileWaypoint> waypoints = {
      {.lat = 551549341, .lon = 88654321, .altitude_m = 1234.56, .name = "A01"},
      {.lat = -(1 << 30),
       .lon = INT32_MIN,
       .altitude_m = -430,
       .name = "Süd, \"Pol\"",
       .description = "-- Ж"},
      {.lat = 1 << 30,
       .lon = INT32_MAX,
       .name = "same",
       .description = "another",
       .comment = "remark",
       .type = kWaypointAirfield},
      {.lat = -77, .lon = -99, .name = "12", .description = "4500.000N,00700.000E"},
  };
  constexpr double kHalfMilliminute = 99.5;  // in semicircles
  ExpectSameWaypoints(ReadGood(Read, Write(waypoints)).waypoints, waypoints,
                      {.altitude_m = 0.0501, .semicircles = kHalfMilliminute});
}

}  // namespace
}  // namespace skyhaul::cup
