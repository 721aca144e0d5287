#include <gmock/gmock.h>

#include <random>

#include "formats/openair/read_openair.h"
#include "formats/openair/write_openair.h"
#include "tests/support/airspace_place.h"

namespace skyhaul::openair {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::SizeIs;

AirspaceFile ReadGood(std::string_view text) {
  AirspaceFile file;
  std::string message = "left over";
  Read(text, file, message);
  EXPECT_EQ(message, "");
  return file;
}

// The one segment after a centre at 47 N 8 E.
std::vector<AirspaceSegment> Segments(const std::string& lines) {
  return ReadGood("AC A\nDP 0 N 0 E\nV X=47 N 8 E\n" + lines).airspaces.at(0).segments;
}

// A file in the form of the writer comes back to the byte, the numbers as they were; other
// spellings come back in that form.
TEST(OpenAir, ReadsWholeAirspacesAndWritesThem) {
  const std::string text =
      "AC R\r\n"
      "AN Z\xC3\xBCrich (LS-R 7)\r\n"
      "AH Ask on 122.8\r\n"
      "AL 2500ft  agl\r\n"
      "AY TMA\r\n"
      "AF 122.800\r\n"
      "AF 123.4 ; winter\r\n"
      "AG Z\xC3\xBCrich Info\r\n"
      "AX 7000\r\n"
      "AA 2026-05-14T09:00Z/2026-05-14T10:00Z\r\n"
      "AI 5c39\r\n"
      "DP 47:30:15 N 008:15:30.5 E\r\n"
      "V X=47:00:00.25 N 008:00:59.123 W\r\n"
      "DB 47:06:00 N 008:00:00 E,47:00:00 S 008:09:00 E\r\n"
      "V D=-\r\n"
      "DA 5.3,270.25,360\r\n"
      "V X=90:00:00 N 180:00:00 W\r\n"
      "DC 0.123456789\r\n"
      "V D=+\r\n"
      "DA 10,0,0.1\r\n"
      "\r\n"
      "AC ctr\r\n"
      "AN Small\r\n"
      "AH FL 65\r\n"
      "V X=33:30:00 S 070:45:00 W\r\n"
      "DC 25\r\n";
  const AirspaceFile file = ReadGood(text);
  EXPECT_EQ(Write(file.airspaces), text);
  EXPECT_THAT(file.notes, ElementsAre(HasSubstr("Ask on")));
  EXPECT_EQ(file.airspaces[0].frequency, "122.800\n123.4 ; winter");
  EXPECT_EQ(file.airspaces[0].floor,
            (AirspaceLimit{LimitReference::kGround, {}, 2500, "2500ft  agl"}));
  EXPECT_EQ(file.airspaces[1].ceiling,
            (AirspaceLimit{LimitReference::kFlightLevel, {}, 65, "FL 65"}));
  EXPECT_EQ(file.airspaces[0].segments.at(1).start, At(47.1, 8));
  const AirspaceSegment arc = {SegmentType::kArcByBearings, At(47, 8), {}, {}, 1852, 0, 90, '-'};
  EXPECT_THAT(Segments("V D=-\nDA 1,0,90"), ElementsAre(testing::_, arc));
}

TEST(OpenAirRead, SpellingsOfPositions) {
  const std::pair<AirspacePosition, std::vector<std::string>> cases[] = {
      {At(47.5, 8.25),
       {"47:30:00 N 008:15:00 E", "47:30:00N 8:15:00E", "47:30:00N008:15:00E",
        "47:30.000 n, 008:15.000 e", "47.5 N 8.25 E", "47.5N\t8.25E", " 47: 29:60 N 008:14:60 E",
        "47.5 N 8.25 E ; 12 corner", "47.5 N 8.25 E - corner 12", "47.5 N 8.25 E,",
        "47.5 N 8.25 E#1", "47.5 N 8.25 E * corner"}},
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
  // Comments elsewhere.
  EXPECT_EQ(
      Segments("V D=- ; left\nV X=46 N 7 E centre\nDA 1,0,90 // arc\nDB 1 N 2 E,3 N 4 E (arc)\n"
               "DC 5 \"5 miles\""),
      Segments("V D=-\nV X=46 N 7 E\nDA 1,0,90\nDB 1 N 2 E,3 N 4 E\nDC 5"));
}

TEST(OpenAirRead, BrokenLinesAreSkippedWithANote) {
  const struct {
    const char* note;
    bool damages;
    std::vector<std::string> lines;
  } cases[] = {
      {"position not understood: ",
       true,
       {"DP 47:30:15 N", "DP 90:00:01 N 008:00:00 E", "DP 47:00:00 N 180:00:01 E",
        "DP 47:61:00 N 008:00:00 E", "DP 47:30.5:15 N 008:00:00 E", "DP 47:30:15:10 N 008:00:00 E",
        "DP -47:30:15 N 008:00:00 E", "DP 008:00:00 E 47:30:15 N",
        "DP 47:30:15 N 008:00:00 E 47:30:15", "DP 47:30:15 N 008:00:00 E, .5",
        "DP inf N 008:00:00 E", "DB 47:30:15 N 008:00:00 E", "DP 48 N 10 EDP 49 N 10 E",
        "DP 48 N 9 E corner 12DP 48 N 10 E", "DP 48 N 9 E ; cornerDC 5", "DP 48 N 9 E dc 5",
        "DP 48 N 9 EDA 10,270,290", "DB 1 N 2 E,3 N 4 EV D=-", "V X=48 N 9 E DC 5"}},
      {"bearings not understood: ",
       true,
       {"DA 5,270", "DA 5,270,361", "DA 5,270,-10", "DA 5,1,2 km", "DA 5,1,2 ;DC 5"}},
      {"radius",
       true,
       {"DA 0,270,300", "DC -1", "DC 5401", "DC 1 2", "DC 1e3", "DC 5 km", "DC 5 (V D=-)"}},
      {"holds a piece of an outline: ",
       true,
       {"AN X DP 5 N 6 E", "AH FL65DC 5", "AL GND DP 5 N 6 E", "AF 122.8V X=5 N 6 E",
        "AI XDA 1,2,3"}},
      {"airways are not read: ", true, {"DY 5 N 6 E"}},
      {"Line 4: not understood: ",
       true,
       {"EP 5 N 6 E", "5:00 N 6:00 E", "DO 5", "VX 5 N 6 E", "AT 1 N 2 EDP 3 N 4 E",
        "SP 0,1,255,0,0DC 5", "V W=5DP 5 N 6 E"}},
      {"direction not understood: ", true, {"V D=+DC 5"}},
      {"direction not understood: ", false, {"V D=x"}},
      {"Line 4: not understood: ",
       false,
       {"V W=5", "V X", "AYTMA", "AT 47:30:15 N 008:00:00 E", "SP 0,1,255,0,0", "ANNEX",
        "; DP 5 N 6 E"}},
  };
  for (const auto& [note, damages, lines] : cases) {
    for (const std::string& line : lines) {
      const AirspaceFile file =
          ReadGood("AC A\nDP 1 N 2 E\nV X=3 N 4 E\n" + line + "\nDP 5 N 6 E\nDP 7 N 6 E");
      const auto& notes = damages ? file.damage : file.notes;
      ASSERT_THAT(notes, ElementsAre(AllOf(HasSubstr(note), HasSubstr("Line 4: "),
                                           testing::EndsWith(": " + line))));
      EXPECT_EQ(file.damage.size() + file.notes.size(), 1U) << line;
      EXPECT_EQ(file.airspaces.at(0).damage, damages ? notes[0] : "");
      EXPECT_THAT(file.airspaces.at(0).segments, SizeIs(3)) << line;
    }
  }
}

TEST(OpenAirRead, DamageIsWhatALaterLineOfTheSameAirspaceNeeds) {
  const std::pair<std::string, std::string> cases[] = {
      {"V X=bad\nDP 1 N 1 E\nDP 1 N 2 E\nDP 2 N 1 E", ""},
      {"V X=bad\nV X=1 N 1 E\nDC 5", ""},
      {"DC 5\nV X=bad\nAC B\nV X=1 N 1 E\nDC 5", ""},
      {"V X=bad\nDC 5", "Line 3: position not understood: V X=bad"},
      {"V Y=1 N 1 E\nDC 5", "Line 3: not understood: V Y=1 N 1 E"},
      {"V D=x\nV D=+\nDA 1,0,90", ""},
      {"V D=x\nDA 1,0,90", "Line 3: direction not understood: V D=x"},
      {"AN A\nDP 1 N 1 E\nAN B\nDP 2 N 2 E", "Line 5: replaces the name before it: AN B"},
      {"DC 1\nTO Lake\nDP bad", ""},
      {"DP 1 N 1 E\nDP 2 N 2 E\nDP 1 N 1 E", "Line 1: fewer than three points in this airspace"},
      {"DC 1\nDP 1 N 1 E*DP 2 N 2 E", "Line 4: holds a record behind the star: DP 1 N 1 E"},
      {"DC 1 * 1 N 1 E\n* DP 1 N 1 E", ""},
  };
  for (const auto& [lines, damage] : cases) {
    const AirspaceFile file =
        ReadGood("AC A\nV X=47 N 8 E\n" + lines + "\nAC C\nV X=1 N 1 E\nDC 5");
    EXPECT_EQ(file.airspaces.at(0).damage, damage);
    EXPECT_EQ(file.airspaces.back().damage, "");
    EXPECT_EQ(file.damage.empty(), damage.empty()) << lines;
  }
}

TEST(OpenAirRead, GivesAirspacesAndNotesOrRefuses) {
  const std::string no_airspace = "Format error on line 1: no airspace (AC) in this file";
  const std::string no_outline = "Format error on line 2: no airspace with an outline";
  const std::pair<std::string, std::string> cases[] = {
      {"\xEF\xBB\xBF* Airspace of 2024\r\nac  r\r\nan\tx * inline\r\n\r\nah FL 65\r\naf 1\r\nAF\r\n"
       "v x = 33:30:00S 070:45:00W\r\ndc 25",
       "AC r\r\nAN x\r\nAH FL 65\r\nAF 1\r\nV X=33:30:00 S 070:45:00 W\r\nDC 25\r\n"},
      // A centre and a direction end with their airspace.
      {"AC A\nV D=-\nV X=47 N 8 E\nDA 1,0,90\nV X=broken\nDC 5\n"
       "AC B\nDC 5\nV X=46 N 7 E\nDA 1,0,90\n",
       "AC A\r\nV D=-\r\nV X=47:00:00 N 008:00:00 E\r\nDA 1,0,90\r\n\r\n"
       "AC B\r\nV X=46:00:00 N 007:00:00 E\r\nDA 1,0,90\r\n"
       "Line 5: position not understood: V X=broken\n"
       "Line 6: no centre (V X=) before it: DC 5\n"
       "Line 8: no centre (V X=) before it: DC 5\n"},
      {"DP 1 N 1 E\nAC A\nAN Empty\nAC B\nAN Kept\nAN Gen\xE8ve\nAH see NOTAM\nV X=1 N 1 E\nDC 5\n"
       "TO Lake\nDP 2 N 2 E\n",
       "AC B\r\nAN Genève\r\nAH see NOTAM\r\nV X=01:00:00 N 001:00:00 E\r\nDC 5\r\n"
       "Line 1: outside an airspace: DP 1 N 1 E\n"
       "Line 2: airspace without an outline left out: Empty\n"
       "Line 6: replaces the name before it: AN Genève\n"
       "Line 7: altitude kept as text only: AH see NOTAM\n"
       "Line 10: terrain is not used: TO Lake\n"
       "Line 11: outside an airspace: DP 2 N 2 E\n"},
      {"", no_airspace},
      {"* AC A\n* DP 1 N 1 E\n", no_airspace},
      {"DP 1 N 1 E\nAC A\n", no_outline},
  };
  for (const auto& [text, expected] : cases) {
    AirspaceFile file = {.airspaces = {{}}, .notes = {"left over"}};
    std::string found;
    const int count = Read(text, file, found);
    EXPECT_EQ(count, found.empty() ? static_cast<int>(file.airspaces.size()) : -1) << text;
    EXPECT_EQ(LooksLike(text), found.empty()) << text;
    found += Write(file.airspaces);
    for (const auto* notes : {&file.damage, &file.notes}) {
      for (const std::string& note : *notes) found += note + '\n';
    }
    EXPECT_EQ(found, expected);
  }
}

TEST(OpenAirWrite, AnyPositionAndRadiusIsReadBack) {
  std::mt19937 random(20240301);  // NOLINT(bugprone-random-generator-seed): repeatable
  std::uniform_int_distribution<int32_t> lat(-(1 << 30), 1 << 30);
  std::uniform_int_distribution<int32_t> lon(INT32_MIN, INT32_MAX);
  std::uniform_real_distribution<double> radius_m(1, 1e6);
  std::uniform_real_distribution<double> bearing_deg(0, 360);
  CtrRecord airspace = {.name = "Many", .airspace_class = "Q"};
  for (int i = 0; i < 5000; ++i) {
    airspace.segments.push_back({.type = SegmentType::kArcByBearings,
                                 .point = {.lat = lat(random), .lon = lon(random)},
                                 .radius_m = radius_m(random),
                                 .start_bearing_deg = bearing_deg(random)});
  }
  const AirspaceFile again = ReadGood(Write({&airspace, 1}));
  EXPECT_THAT(again.notes, testing::IsEmpty());
  ASSERT_EQ(again.airspaces.at(0).segments.size(), airspace.segments.size());
  for (size_t i = 0; i < airspace.segments.size(); ++i) {
    const AirspaceSegment& left = again.airspaces[0].segments[i];
    const AirspaceSegment& right = airspace.segments[i];
    EXPECT_EQ(left.point, right.point) << i;
    EXPECT_NEAR(left.radius_m, right.radius_m, 2e-6) << i;
    EXPECT_NEAR(left.start_bearing_deg, right.start_bearing_deg, 1e-9) << i;
  }
}

TEST(OpenAirWrite, TextThatCouldBreakALineIsMadePlain) {
  const CtrRecord airspace = {
      .name = " A*B\r\nDC 5\t",
      .floor = {.reference = LimitReference::kGround, .value = 500},
      .ceiling = {.reference = LimitReference::kFlightLevel, .value = 95, .text = "\n"},
      .segments = {{.point = {.lat = 1, .lon = -1}}},
  };
  EXPECT_EQ(Write({&airspace, 1}),
            "AC UNCLASSIFIED\r\nAN A B  DC 5\r\nAH FL95\r\nAL 500ft AGL\r\n"
            "DP 00:00:00.0003 N 000:00:00.0003 W\r\n");
  EXPECT_EQ(Write({}), "");
}

}  // namespace
}  // namespace skyhaul::openair
