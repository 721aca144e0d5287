#include <gmock/gmock.h>

#include "formats/cup/quoted_fields.h"
#include "formats/cup/read_cup.h"
#include "formats/cup/write_cup.h"
#include "tests/formats/waypoint_files.h"

namespace skyhaul::cup {
namespace {

// No fields: a quote is left open, and the record ends with its first line.
TEST(TakeQuotedRecord, SplitsFieldsAndGivesUpAnOpenQuote) {
  const std::string start = "a,\"open\nnext,line\n";
  const std::string far(kMaxRecordLines, '\n');
  const std::tuple<std::string, std::vector<std::string>, int, std::string> cases[] = {
      {"a,b\r\nc", {"a", "b"}, 1, "c"},
      {" a b , \"c, d\" ,e", {"a b", "c, d", "e"}, 1, ""},
      {R"("say ""Ah""","""",x"y"z)", {"say \"Ah\"", "\"", "x\"y\"z"}, 1, ""},
      {R"("a"b,c)", {"ab", "c"}, 1, ""},
      {"\"two\r\nlines\",b\nc", {"two\r\nlines", "b"}, 2, "c"},
      {start, {}, 1, "next,line\n"},
      {start + far + '"', {}, 1, "next,line\n" + far + '"'},
      {start + ",\"another\",field\n", {}, 1, "next,line\n,\"another\",field\n"},
  };
  for (const auto& [text, fields, lines, after] : cases) {
    std::string_view rest = text;
    QuotedRecord record;
    EXPECT_EQ(TakeQuotedRecord(rest, record), lines) << text;
    EXPECT_EQ(record.closed, !fields.empty()) << text;
    EXPECT_EQ(record.fields, fields) << text;
    EXPECT_EQ(rest, after) << text;
  }
}

const std::string kHeading = "name,code,country,lat,lon,elev,style,rwdir,rwlen,freq,desc\r\n";

constexpr WaypointReader kReader = {LooksLike, Read};

TEST(CupRead, ReadsNotesAndRefuses) {
  const std::string origin = ",,0000.000N,00000.000E,,1,,,,remark\n";
  ExpectShown(
      kReader,
      {
          {"name,code,country,lat,lon,elev,style,rwdir,rwlen,rwwidth,freq,desc,userdata,pics\r\n"
           "\"Lesce-Bled\",\"LJBL\",SI,4621.666N,01410.332E,504.0m,5,130,1130m,30m,123.500,"
           "\"Home, \"\"the\"\" field\",,\r\n",
           "46.3611 14.1722 504 LJBL|Lesce-Bled|Home, \"the\" field type 1\n"},
          // Without a heading.
          {"\"A\",,CH,4530.000N,00730.000E,9m,1,,,,\"remark\"\n", "45.5 7.5 9 A||remark\n"},
          {kHeading, ""},
          // Name and description are what is left of name, code and remark.
          {kHeading + "Start hill,A01" + origin, "0 0 0 A01|Start hill|remark\n"},
          {kHeading + "A01,A01" + origin, "0 0 0 A01||remark\n"},
          {kHeading + "Z\xFCrs," + origin, "0 0 0 Zürs||remark\n"},
          {kHeading + ",A01" + origin, "0 0 0 A01||remark\n"},
          // Positions, elevations and styles.
          {kHeading + "P,,,4530.000s,00730.000w,1000ft,2\n", "-45.5 -7.5 304.8 P type 1\n"},
          {kHeading + "P,,,0000.600S,00000.600W,-12.5M,3\n", "-0.01 -0.01 -12.5 P\n"},
          {kHeading + "P,,,9000.000N,18000.000W,7,4\n", "90 -180 7 P type 1\n"},
          {kHeading + "P,,,4530N,730E, 100 FT ,5\n", "45.5 7.5 30.48 P type 1\n"},
          {kHeading + "P,,,4559.99999N,17959.99999E,,\n", "45.9999999 179.9999998 0 P\n"},
          {"\xEF\xBB\xBFTitle,Code,Country,Latitude,Longitude,Elevation,Style,Direction,"
           "Length,Frequency,Description\n"
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
           ",\"good\",\"last\"\n",
           "45.5 7.5 0 good\n"
           "45.5 7.5 0 unit\n"
           "45.5 7.5 0 two lines\n"
           "45.5 7.5 0 high\n"
           "45.5 7.5 0 last\n" +
               Notes({4, 5, 6, 7, 8}, "the position cannot be read; skipped") +
               "Line 9: the elevation cannot be read and is taken for 0\n"
               "Line 12: a quote is not closed; skipped\n"
               "Line 13: the elevation cannot be read and is taken for 0\n"},
          {"", "Format error on line 1: not the heading of a SeeYou CUP file"},
          {"\n\n$FormatGEO\n", "Format error on line 3: not the heading of a SeeYou CUP file"},
          {kHeading + "\nx\n", "Format error on line 3: the position cannot be read"},
      });
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
            kHeading +
                "\"A01\",\"A01\",,4500.000N,04500.000W,12.3m,1,,,,\"\"\r\n"
                "\"The \"\"field\"\",  old\",\"LJBL\",,0000.000S,00006.000E,-1.0m,5,,,,"
                "\"a \"\"remark\"\"\"\r\n");
}

TEST(CupWrite, ComesBackWithinItsResolution) {
  std::vector<FileWaypoint> waypoints = SampleWaypoints();
  for (FileWaypoint& waypoint : waypoints) waypoint.time = 0;
  waypoints[0].comment = "remark";
  waypoints.push_back({.lat = -77, .altitude_m = 1234.56, .name = "Süd, \"Pol\""});
  waypoints.push_back({.name = "same", .description = "-- Ж"});
  // Half a thousandth of a minute.
  ExpectComeBack(kReader, Write, waypoints, {.altitude_m = 0.0501, .semicircles = 99.5});
}

}  // namespace
}  // namespace skyhaul::cup
