#include "formats/openair/read_openair.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "core/units.h"

namespace skyhaul {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

AirspacePosition At(double lat_deg, double lon_deg) {
  const double per_degree = 2147483648.0 / 180;
  return {.lat = static_cast<int32_t>(std::lround(lat_deg * per_degree)),
          .lon = static_cast<int32_t>(std::lround(lon_deg * per_degree))};
}

AirspaceFile Read(std::string_view text) {
  AirspaceFile file;
  std::string message;
  const int count = ReadOpenAir(text, file, message);
  EXPECT_EQ(count, static_cast<int>(file.airspaces.size())) << message;
  EXPECT_EQ(message, "");
  return file;
}

// The one segment after a centre at 47 N 8 E.
std::vector<AirspaceSegment> Segments(std::string_view lines) {
  return Read("AC A\nDP 0 N 0 E\nV X=47 N 8 E\n" + std::string(lines)).airspaces.at(0).segments;
}

TEST(ReadOpenAir, WholeAirspaces) {
  const AirspaceFile file = Read(
      "\xEF\xBB\xBF* Airspace of nowhere\r\n"
      "AC CTR\r\n"
      "AN Z\xC3\xBCrich 1 * inline\r\n"
      "AH FL 65\r\n"
      "AL GND\r\n"
      "DP 47:30:15 N 008:15:30.5 E\r\n"
      "V X=47:00:00 N 008:00:00 E\r\n"
      "V D=-\r\n"
      "DB 47:06:00 N 008:00:00 E,47:00:00 N 008:09:00 E\r\n"
      "V D=+\r\n"
      "DA 5.5, 270, 360\r\n"
      "\r\n"
      "ac  r\r\n"
      "an\tSmall\r\n"
      "ah 4500 MSL\r\n"
      "v x = 33:30:00S 070:45:00W\r\n"
      "dc 2\r\n");
  EXPECT_THAT(file.notes, IsEmpty());
  ASSERT_THAT(file.airspaces, SizeIs(2));

  const CtrRecord& first = file.airspaces[0];
  EXPECT_EQ(first.name, "Z\xC3\xBCrich 1");
  EXPECT_EQ(first.airspace_class, "CTR");
  EXPECT_EQ(first.remark, "");
  EXPECT_EQ(first.number, 0U);
  EXPECT_EQ(first.ceiling.reference, LimitReference::kFlightLevel);
  EXPECT_EQ(first.ceiling.text, "FL 65");
  EXPECT_EQ(first.floor.reference, LimitReference::kSurface);
  ASSERT_THAT(first.segments, SizeIs(3));
  EXPECT_EQ(first.segments[0].point, At(47 + 30 / 60.0 + 15 / 3600.0, 8 + 15 / 60.0 + 30.5 / 3600));
  EXPECT_EQ(first.segments[1].type, SegmentType::kArcByPoints);
  EXPECT_EQ(first.segments[1].point, At(47, 8));
  EXPECT_EQ(first.segments[1].start, At(47.1, 8));
  EXPECT_EQ(first.segments[1].end, At(47, 8.15));
  EXPECT_EQ(first.segments[1].direction, kCounterClockwise);
  EXPECT_EQ(first.segments[2].type, SegmentType::kArcByBearings);
  EXPECT_EQ(first.segments[2].radius_m, 10186);
  EXPECT_EQ(first.segments[2].start_bearing_deg, 270);
  EXPECT_EQ(first.segments[2].end_bearing_deg, 360);
  EXPECT_EQ(first.segments[2].direction, kClockwise);

  const CtrRecord& second = file.airspaces[1];
  EXPECT_EQ(second.name, "Small");
  EXPECT_EQ(second.airspace_class, "r");
  ASSERT_THAT(second.segments, SizeIs(1));
  EXPECT_EQ(second.segments[0].type, SegmentType::kCircle);
  EXPECT_EQ(second.segments[0].point, At(-33.5, -70.75));
  EXPECT_EQ(second.segments[0].radius_m, 3704);
}

TEST(ReadOpenAir, SpellingsOfPositions) {
  const AirspacePosition place = At(47.5, 8.25);
  const struct {
    const char* text;
    AirspacePosition position;
  } cases[] = {
      {"47:30:00 N 008:15:00 E", place},
      {"47:30:00N 8:15:00E", place},
      {"47:30:00N008:15:00E", place},
      {"47:30.000 n, 008:15.000 e", place},
      {"47.5 N 8.25 E", place},
      {"47.5N\t8.25E", place},
      {" 47: 29:60 N 008:14:60 E", place},
      {"47:30:0.36S 8:15:0.36W", At(-47.5001, -8.2501)},
      {"90:00:00 N 180:00:00 W", {.lat = 1 << 30, .lon = INT32_MIN}},
      {"90:00:00 S 180:00:00 E", {.lat = -(1 << 30), .lon = INT32_MAX}},
  };
  for (const auto& c : cases) {
    const auto segments = Segments(std::string("DP ") + c.text);
    ASSERT_THAT(segments, SizeIs(2)) << c.text;
    EXPECT_EQ(segments[1].point, c.position) << c.text;
  }
  EXPECT_EQ(Segments("DP47:30:00 N 008:15:00 E").at(1).point, place);
}

TEST(ReadOpenAir, BrokenLinesAreSkippedWithANote) {
  const struct {
    const char* line;
    const char* note;
  } cases[] = {
      {"DP 47:30:15 N", "Line 4: position not understood: DP 47:30:15 N"},
      {"DP 90:00:01 N 008:00:00 E", "position"},
      {"DP 47:00:00 N 180:00:01 E", "position"},
      {"DP 47:61:00 N 008:00:00 E", "position"},
      {"DP 47:30.5:15 N 008:00:00 E", "position"},
      {"DP 47:30:15:10 N 008:00:00 E", "position"},
      {"DP -47:30:15 N 008:00:00 E", "position"},
      {"DP 47:30:15 008:00:00", "position"},
      {"DP 008:00:00 E 47:30:15 N", "position"},
      {"DP 47:30:15 N 008:00:00 E 47:30:15", "position"},
      {"DP inf N 008:00:00 E", "position"},
      {"DP", "position"},
      {"DB 47:30:15 N 008:00:00 E", "position"},
      {"DA 5,270", "bearings"},
      {"DA 5,270,361", "bearings"},
      {"DA 5,270,-10", "bearings"},
      {"DA 0,270,300", "radius"},
      {"DC -1", "radius"},
      {"DC 5401", "radius"},
      {"DC 1 2", "radius"},
      {"DC 1e3", "radius"},
      {"V D=x", "direction"},
      {"V W=5", "not understood: V W=5"},
      {"V X", "not understood: V X"},
      {"AY TMA", "Line 4: not understood: AY TMA"},
      {"AF 122.8", "not understood"},
      {"AT 47:30:15 N 008:00:00 E", "not understood"},
      {"SP 0,1,255,0,0", "not understood"},
      {"SB -1,-1,-1", "not understood"},
      {"DY 47:30:15 N 008:00:00 E", "not understood"},
      {"ANNEX", "not understood"},
  };
  for (const auto& c : cases) {
    const AirspaceFile file =
        Read(std::string("AC A\nDP 1 N 2 E\nV X=3 N 4 E\n") + c.line + "\nDP 5 N 6 E");
    ASSERT_THAT(file.notes, SizeIs(1)) << c.line;
    EXPECT_THAT(file.notes[0], HasSubstr(c.note)) << c.line;
    ASSERT_THAT(file.airspaces, SizeIs(1)) << c.line;
    EXPECT_THAT(file.airspaces[0].segments, SizeIs(2)) << c.line;
  }
}

TEST(ReadOpenAir, VariablesEndWithTheirAirspace) {
  const AirspaceFile file = Read(
      "AC A\nV D=-\nV X=47 N 8 E\nDA 1,0,90\nV X=broken\nDC 5\n"
      "AC B\nDC 5\nV X=46 N 7 E\nDA 1,0,90\n");
  EXPECT_THAT(file.notes, ElementsAre("Line 5: position not understood: V X=broken",
                                      "Line 6: no centre (V X=) before it: DC 5",
                                      "Line 8: no centre (V X=) before it: DC 5"));
  ASSERT_THAT(file.airspaces, SizeIs(2));
  EXPECT_THAT(file.airspaces[0].segments, SizeIs(1));
  EXPECT_EQ(file.airspaces[0].segments[0].direction, kCounterClockwise);
  EXPECT_THAT(file.airspaces[1].segments, SizeIs(1));
  EXPECT_EQ(file.airspaces[1].segments[0].direction, kClockwise);
  EXPECT_EQ(file.airspaces[1].segments[0].point, At(46, 7));
}

TEST(ReadOpenAir, TerrainAndEmptyAirspacesAreLeftOut) {
  const AirspaceFile file = Read(
      "DP 1 N 1 E\nAC A\nAN Empty\nAC B\nAN Kept\nAN Again\nAH see NOTAM\nDP 1 N 1 E\n"
      "TO Lake\nDP 2 N 2 E\n");
  EXPECT_THAT(file.notes, ElementsAre("Line 1: outside an airspace: DP 1 N 1 E",
                                      "Line 2: airspace without an outline left out: Empty",
                                      "Line 6: replaces the name before it: AN Again",
                                      "Line 7: altitude kept as text only: AH see NOTAM",
                                      "Line 9: terrain is not used: TO Lake",
                                      "Line 10: outside an airspace: DP 2 N 2 E"));
  ASSERT_THAT(file.airspaces, SizeIs(1));
  EXPECT_EQ(file.airspaces[0].name, "Again");
  EXPECT_EQ(file.airspaces[0].ceiling.text, "see NOTAM");
  EXPECT_THAT(file.airspaces[0].segments, SizeIs(1));
}

TEST(ReadOpenAir, Windows1252) {
  EXPECT_EQ(Read("AC A\nAN Z\xFCrich\nDP 1 N 1 E\n").airspaces.at(0).name, "Z\xC3\xBCrich");
}

TEST(ReadOpenAir, RefusesFilesOfAnotherKind) {
  const struct {
    const char* text;
    const char* message;
  } cases[] = {
      {"", "Format error on line 1: no airspace (AC) in this file"},
      {"AFLY001\nHFDTE010203\nB1200004730000N00815000EA0100001000\n",
       "Format error on line 1: no airspace (AC) in this file"},
      {"* nothing\nAC A\nAN Name\n", "Format error on line 2: no airspace with an outline"},
  };
  for (const auto& c : cases) {
    AirspaceFile file = {.airspaces = {{.name = "old"}}, .notes = {"old"}};
    std::string message;
    EXPECT_EQ(ReadOpenAir(c.text, file, message), -1) << c.text;
    EXPECT_EQ(message, c.message);
    EXPECT_THAT(file.airspaces, IsEmpty());
    EXPECT_THAT(file.notes, IsEmpty());
  }
}

TEST(LooksLikeOpenAir, ByAClassAndAnOutline) {
  const struct {
    const char* text;
    bool openair;
  } cases[] = {
      {"\xEF\xBB\xBF"
       "AC A\r\nAN x\r\nDP 1 N 1 E\r\n",
       true},
      {"Airspace of 2024\nac r\nv x=1 N 1 E\n", true},
      {"AC A\nAN x\n", false},
      {"* AC A\n* DP 1 N 1 E\n", false},
      {"DP 1 N 1 E\nAC A\n", false},
      {"AFLY001\nB1200004730000N00815000EA0100001000\n", false},
      {"name,code,country\n\"AC A\",DP,CH\n", false},
      {"", false},
  };
  for (const auto& c : cases) EXPECT_EQ(LooksLikeOpenAir(c.text), c.openair) << c.text;
}

}  // namespace
}  // namespace skyhaul
