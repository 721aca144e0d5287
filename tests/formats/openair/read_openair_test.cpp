#include "formats/openair/read_openair.h"

#include <gmock/gmock.h>

#include "tests/formats/read_text.h"
#include "tests/support/airspace_place.h"

namespace skyhaul::openair {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

// The one segment after a centre at 47 N 8 E.
std::vector<AirspaceSegment> Segments(std::string_view lines) {
  return ReadGood(Read, "AC A\nDP 0 N 0 E\nV X=47 N 8 E\n" + std::string(lines))
      .airspaces.at(0)
      .segments;
}

TEST(OpenAirRead, WholeAirspaces) {
  const AirspaceFile file = ReadGood(Read,
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

TEST(OpenAirRead, SpellingsOfPositions) {
  const std::pair<AirspacePosition, std::vector<std::string>> cases[] = {
      {At(47.5, 8.25),
       {"47:30:00 N 008:15:00 E", "47:30:00N 8:15:00E", "47:30:00N008:15:00E",
        "47:30.000 n, 008:15.000 e", "47.5 N 8.25 E", "47.5N\t8.25E", " 47: 29:60 N 008:14:60 E"}},
      {At(-47.5001, -8.2501), {"47:30:0.36S 8:15:0.36W"}},
      {{.lat = 1 << 30, .lon = INT32_MIN}, {"90:00:00 N 180:00:00 W"}},
      {{.lat = -(1 << 30), .lon = INT32_MAX}, {"90:00:00 S 180:00:00 E"}},
  };
  for (const auto& [position, texts] : cases) {
    for (const std::string& text : texts) {
      EXPECT_EQ(Segments("DP " + text).at(1).point, position) << text;
    }
  }
  EXPECT_EQ(Segments("DP47:30:00 N 008:15:00 E").at(1).point, At(47.5, 8.25));
}

TEST(OpenAirRead, BrokenLinesAreSkippedWithANote) {
  const std::pair<const char*, std::vector<std::string>> cases[] = {
      {"position not understood: ",
       {"DP 47:30:15 N", "DP 90:00:01 N 008:00:00 E", "DP 47:00:00 N 180:00:01 E",
        "DP 47:61:00 N 008:00:00 E", "DP 47:30.5:15 N 008:00:00 E", "DP 47:30:15:10 N 008:00:00 E",
        "DP -47:30:15 N 008:00:00 E", "DP 47:30:15 008:00:00", "DP 008:00:00 E 47:30:15 N",
        "DP 47:30:15 N 008:00:00 E 47:30:15", "DP inf N 008:00:00 E", "DP",
        "DB 47:30:15 N 008:00:00 E"}},
      {"bearings not understood: ", {"DA 5,270", "DA 5,270,361", "DA 5,270,-10"}},
      {"radius", {"DA 0,270,300", "DC -1", "DC 5401", "DC 1 2", "DC 1e3"}},
      {"direction not understood: ", {"V D=x"}},
      {"Line 4: not understood: ",
       {"V W=5", "V X", "AY TMA", "AT 47:30:15 N 008:00:00 E", "SP 0,1,255,0,0", "ANNEX"}},
  };
  for (const auto& [note, lines] : cases) {
    for (const std::string& line : lines) {
      const AirspaceFile file =
          ReadGood(Read, Joined({"AC A\nDP 1 N 2 E\nV X=3 N 4 E\n", line, "\nDP 5 N 6 E"}));
      EXPECT_THAT(file.notes, ElementsAre(AllOf(HasSubstr(note), HasSubstr("Line 4: "),
                                                testing::EndsWith(": " + line))));
      EXPECT_THAT(file.airspaces.at(0).segments, SizeIs(2)) << line;
    }
  }
}

TEST(OpenAirRead, VariablesEndWithTheirAirspace) {
  const AirspaceFile file = ReadGood(Read,
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

TEST(OpenAirRead, TerrainAndEmptyAirspacesAreLeftOut) {
  const AirspaceFile file =
      ReadGood(Read,
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

TEST(OpenAirRead, Windows1252) {
  EXPECT_EQ(ReadGood(Read, "AC A\nAN Z\xFCrich\nDP 1 N 1 E\n").airspaces.at(0).name,
            "Z\xC3\xBCrich");
}

TEST(OpenAirRead, RefusesFilesOfAnotherKind) {
  const std::pair<const char*, const char*> cases[] = {
      {"", "Format error on line 1: no airspace (AC) in this file"},
      {"AFLY001\nHFDTE010203\nB1200004730000N00815000EA0100001000\n",
       "Format error on line 1: no airspace (AC) in this file"},
      {"* nothing\nAC A\nAN Name\n", "Format error on line 2: no airspace with an outline"},
  };
  for (const auto& [text, message] : cases) EXPECT_EQ(ReadBad(Read, text), message);
}

TEST(OpenAirLooksLike, ByAClassAndAnOutline) {
  for (const char* text : {"\xEF\xBB\xBF"
                           "AC A\r\nAN x\r\nDP 1 N 1 E\r\n",
                           "Airspace of 2024\nac r\nv x=1 N 1 E\n"}) {
    EXPECT_TRUE(LooksLike(text)) << text;
  }
  for (const char* text : {"AC A\nAN x\n", "* AC A\n* DP 1 N 1 E\n", "DP 1 N 1 E\nAC A\n",
                           "name,code,country\n\"AC A\",DP,CH\n", ""}) {
    EXPECT_FALSE(LooksLike(text)) << text;
  }
}

}  // namespace
}  // namespace skyhaul::openair
