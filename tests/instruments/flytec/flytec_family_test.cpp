// What the instrument answers to the family's whole set of sentences, as its other clients send
// them.

#include <gtest/gtest.h>

#include "tests/instruments/flytec/simulator_talk.h"

namespace skyhaul::flytec_simulator {
namespace {

using Bodies = std::vector<std::string>;

struct Exchange {
  std::string request;  // without '$' and checksum
  Bodies answers;
};

// Asks one after the other: what one changes is there for the next.
void ExpectExchanges(Simulator& simulator, const std::vector<Exchange>& exchanges) {
  for (const Exchange& exchange : exchanges) {
    std::string expected = "\x13";
    for (const std::string& body : exchange.answers) expected += InstrumentSentence(body);
    EXPECT_EQ(Answers(simulator, {exchange.request}), expected + "\x11") << exchange.request;
  }
}

const std::string kProduct = "PBRSNP,6030,Simulated Pilot  ,01001,3.30";
const std::string kHof = "4743.564,N,01121.571,E,URT062,Urthaler Hof     ,0620";
const std::string kMoved = "0425.130,S,07607.610,W,URT062,Urthaler Hof     ,0620";
const std::string kNew = "0425.130,N,07607.610,W,AAA085,AAA085           ,0850";

TEST(FlytecFamily, ChecksumsOfTheMakersExamples) {
  Simulator simulator;
  const std::string product = "\x13" + InstrumentSentence(kProduct) + "\x11";
  EXPECT_EQ(AnswerTo(simulator, "$PBRWPX,,*1F\r\n$PBRCONF,*68\r\n"), product + product);
  EXPECT_EQ(AnswerTo(simulator, "$PBRRTS,*39\r\n"), "\x13\x11");
  (void)Answers(simulator,
                {"PBRWPR,0425.130,N,07607.610,W,AAA085", "PBRRTR,01,05,00,Route 123        ",
                 "PBRRTR,01,05,01,,AAA085           ", "PBRRTR,01,05,02,,AAA085           ",
                 "PBRRTR,01,05,03,,AAA085           ", "PBRRTR,01,05,04,,AAA085           "});
  EXPECT_TRUE(AnswerTo(simulator, "$PBRRTS,*39\r\n")
                  .starts_with("\x13$PBRRTS,01,05,00,Route 123        *58\r\n"));
  EXPECT_TRUE(AnswerTo(simulator, "$PBRCTRI*4C\r\n").starts_with("\x13$PBRCTRI,000,500,999*"));
}

TEST(FlytecFamily, WaypointsAndTheRoutesThatKeepThem) {
  Simulator simulator;
  ExpectExchanges(
      simulator,
      {{"PBRWPRE,4743.564,N,01121.571,E,,Urthaler Hof     ,0620,255", {}},
       {"PBRWPSE,", {"PBRWPSE," + kHof + ",255"}},
       {"PBRWPR,0425.130,S,07607.610,W,URT062", {}},
       {"PBRWPR,0425.130,N,07607.610,W,AAA085", {}},
       {"PBRWPS,", {"PBRWPS," + kMoved, "PBRWPS," + kNew}},
       // One with a waypoint that does not exist, and one whose second line is missing.
       {"PBRRTR,01,02,00,Nowhere          ", {}},
       {"PBRRTR,01,02,01,,Nowhere          ", {}},
       {"PBRRTR,01,03,00,Short            ", {}},
       {"PBRRTR,01,03,02,,Urthaler Hof     ", {}},
       {"PBRRTR,07,02,00,Route 123        ", {}},
       {"PBRRTR,07,02,01,,Urthaler Hof     ", {}},
       {"PBRRTR,00,01,00,Old task         ", {}},
       {"PBRRTR,00,01,00,Task             ", {}},
       {"PBRRTS,",
        {"PBRRTS,01,02,00,Route 123        ", "PBRRTS,01,02,01,URT062,Urthaler Hof     ",
         "PBRRTS,00,01,00,Task             "}},
       {"PBRWPX,Urthaler Hof     ", {}},
       {"PBRWPX,,", {kProduct}},
       {"PBRWPSE,", {"PBRWPSE," + kMoved + ",255"}},
       {"PBRRTX,Task             ", {}},
       {"PBRRTS,",
        {"PBRRTS,01,02,00,Route 123        ", "PBRRTS,01,02,01,URT062,Urthaler Hof     "}},
       {"PBRRTX,,", {kProduct}},
       {"PBRRTS,", {}},
       {"PBRWPX,Urthaler Hof     ", {}},
       {"PBRWPS,", {}}});
}

TEST(FlytecFamily, AirspacesCountTheirElements) {
  Simulator simulator{.airspace_element_room = 10};
  const auto upload = [&](const std::string& name) {
    return Answers(simulator,
                   {"PBRCTRW,003,000," + name + ",2000", "PBRCTRW,003,001,Remark Kreisbogen",
                    "PBRCTRW,003,002,C,4710.001,N,01104.700,E,12345"});
  };
  const std::string taken = "\x13\x11\x13\x11\x13$PBRANS,1*01\r\n\x11";
  EXPECT_EQ(upload("Kreisbogen       "), taken);
  EXPECT_EQ(upload("Another          "), taken);
  EXPECT_EQ(upload("Another          "), taken);
  EXPECT_EQ(upload("Third            "), "\x13\x11\x13\x11\x13$PBRANS,3*03\r\n\x11");
  ExpectExchanges(simulator, {{"PBRCTRI", {"PBRCTRI,002,500,002"}},
                              {"PBRCTRD,Kreisbogen       ", {"PBRANS,1"}},
                              {"PBRCTRD,Kreisbogen       ", {"PBRANS,2"}},
                              {"PBRCTRD,Another", {"PBRANS,5"}},
                              {"PBRCTRI", {"PBRCTRI,001,500,006"}},
                              {"PBRCTRD,,", {kProduct}},
                              {"PBRCTRI", {"PBRCTRI,000,500,010"}}});
}

TEST(FlytecFamily, SettingsAreInAMemoryThatIsLoadedWhenAsked) {
  Simulator simulator{.pilot_name = "Anna",
                      .settings = {.glider_id = "D-1234", .utc_offset_h = -3}};
  const std::string before = "PBRSNP,6030,Anna             ,01001,3.30";
  ExpectExchanges(simulator,
                  {{"PBRMEMR,0000", {"PBRMEMR,0000,41,6E,6E,61,20,20,20,20"}},
                   {"PBRMEMR,005C", {"PBRMEMR,005C,FD,FF,FF,FF,FF,01,FF,FF"}},
                   {"PBRMEMR,00BA", {"PBRMEMR,00BA,24,FF,FF,FF,FF,FF,53,69"}},
                   {"PBRMEMR,00E0", {"PBRMEMR,00E0,44,2D,31,32,33,34,20,20"}},
                   {"PBRMEMW,0000,2,45,6D,,,,,,", {"PBRMEMR,0000,45,6D,6E,61,20,20,20,20"}},
                   {"PBRSNP,", {before}},
                   {"PBRCONF,", {"PBRSNP,6030,Emna             ,01001,3.30"}}});
  EXPECT_EQ(Answers(simulator, {"PBRMEMR,0100", "PBRMEMR,00", "PBRMEMW,00FF,2,45,6D,,,,,,",
                                "PBRMEMW,0000,2,45,6D,6D,,,,,", "PBRMEMW,0000,2,45,6D"}),
            "");
  EXPECT_EQ(simulator.settings.utc_offset_h, -3);
}

TEST(FlytecFamily, TheExtendedFlightListHasExtremes) {
  // 11.1 m north and 2 m up in a second, the same in two with twice the climb, then 3 m down.
  Simulator simulator{.flights = {FlightFromIgc("AXSH000 6030\r\nHFDTE270417\r\n"
                                                "B1200004700000N01100000EA0100001050\r\n"
                                                "B1200014700006N01100000EA0100201050\r\n"
                                                "B1200034700012N01100000EA0100601050\r\n"
                                                "B1200044700018N01100000EA0100301050\r\n"),
                                  {.igc_text = "damaged"}}};
  ExpectExchanges(
      simulator,
      {{"PBRTLE,",
        {"PBRTLE,02,00,27.04.17,12:00:00,00:00:04,01006,00006,00006,01,02.0,-03.0,040",
         "PBRTLE,02,01,31.12.89,00:00:00,00:00:00,00000,00000,00000,00,00.0,-00.0,000"}}});
}

}  // namespace
}  // namespace skyhaul::flytec_simulator
