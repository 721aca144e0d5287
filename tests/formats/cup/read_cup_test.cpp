#include "formats/cup/read_cup.h"

#include <gmock/gmock.h>
#include "formats/waypoints/position.h"
#include "tests/formats/read_text.h"

namespace skyhaul {
namespace {

using testing::ElementsAre;

constexpr std::string_view kHeading =
    "name,code,country,lat,lon,elev,style,rwdir,rwlen,freq,desc\r\n";

TEST(ReadCup, ReadsAWaypoint) {
  const WaypointFile file = ReadGood(
      ReadCup,
      "name,code,country,lat,lon,elev,style,rwdir,rwlen,rwwidth,freq,desc,userdata,pics\r\n"
      "\"Lesce-Bled\",\"LJBL\",SI,4621.666N,01410.332E,504.0m,5,130,1130m,30m,123.500,"
      "\"Home, \"\"the\"\" field\",,\r\n");
  ASSERT_EQ(file.waypoints.size(), 1U);
  const FileWaypoint& waypoint = file.waypoints[0];
  EXPECT_EQ(waypoint.name, "LJBL");
  EXPECT_EQ(waypoint.description, "Lesce-Bled");
  EXPECT_NEAR(DegreesFromSemicircles(waypoint.lat), 46 + 21.666 / 60, 1e-7);
  EXPECT_NEAR(DegreesFromSemicircles(waypoint.lon), 14 + 10.332 / 60, 1e-7);
  EXPECT_EQ(waypoint.altitude_m, 504);
  EXPECT_EQ(waypoint.type, kWaypointAirfield);
  EXPECT_EQ(waypoint.time, 0U);
  EXPECT_THAT(file.notes, ElementsAre());
}

TEST(ReadCup, ChoosesNameAndDescription) {
  const std::tuple<std::string_view, std::string_view, std::string_view> cases[] = {
      {"A01,A01", "A01", ""}, {"A01,", "A01", ""},      {"Start hill,A01", "A01", "Start hill"},
      {",A01", "A01", ""},    {"Z\xFCrs,", "Zürs", ""},
  };
  for (const auto& [name_and_code, name, description] : cases) {
    const WaypointFile file = ReadGood(ReadCup, std::string(kHeading) + std::string(name_and_code) +
                                                    ",,0000.000N,00000.000E,,1,,,,remark\n");
    ASSERT_EQ(file.waypoints.size(), 1U);
    EXPECT_EQ(file.waypoints[0].name, name);
    EXPECT_EQ(file.waypoints[0].description, description);
    EXPECT_EQ(file.waypoints[0].comment, "remark");
  }
}

TEST(ReadCup, ReadsPositionsElevationsAndStyles) {
  const struct {
    std::string_view fields;
    double lat_deg;
    double lon_deg;
    double altitude_m;
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
        ReadGood(ReadCup, std::string(kHeading) + "P,,," + std::string(test.fields) + "\n");
    ASSERT_EQ(file.waypoints.size(), 1U) << test.fields;
    EXPECT_NEAR(DegreesFromSemicircles(file.waypoints[0].lat), test.lat_deg, 1e-7) << test.fields;
    EXPECT_NEAR(DegreesFromSemicircles(file.waypoints[0].lon), test.lon_deg, 1e-7) << test.fields;
    EXPECT_NEAR(file.waypoints[0].altitude_m, test.altitude_m, 1e-9) << test.fields;
    EXPECT_EQ(file.waypoints[0].type == kWaypointAirfield, test.airfield) << test.fields;
  }
}

TEST(ReadCup, SkipsBrokenLinesWithANote) {
  const WaypointFile file =
      ReadGood(ReadCup,
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

TEST(ReadCup, ReadsAFileWithoutHeadingAndAnEmptyOne) {
  const std::string_view line = "\"A\",,CH,4530.000N,00730.000E,9m,1,,,,\"remark\"\n";
  EXPECT_TRUE(LooksLikeCup(line));
  const WaypointFile file = ReadGood(ReadCup, line);
  ASSERT_EQ(file.waypoints.size(), 1U);
  EXPECT_EQ(file.waypoints[0].comment, "remark");
  EXPECT_EQ(ReadGood(ReadCup, kHeading).waypoints.size(), 0U);
}

TEST(ReadCup, RefusesOtherFiles) {
  const std::tuple<std::string, std::string_view, bool> cases[] = {
      {"", "Format error on line 1: not the heading of a SeeYou CUP file", false},
      {"\n\n$FormatGEO\n", "Format error on line 3: not the heading of a SeeYou CUP file", false},
      {"name,lat,height\n", "Format error on line 1: not the heading of a SeeYou CUP file", false},
      {std::string(kHeading) + "\nx\n", "Format error on line 3: the position cannot be read",
       true},
  };
  for (const auto& [text, message, looks_like_cup] : cases) {
    EXPECT_EQ(ReadBad(ReadCup, text), message);
    EXPECT_EQ(LooksLikeCup(text), looks_like_cup);
  }
}

}  // namespace
}  // namespace skyhaul
