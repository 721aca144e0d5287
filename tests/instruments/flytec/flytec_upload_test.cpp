#include <gtest/gtest.h>

#include "instruments/flytec/instrument_text.h"
#include "tests/instruments/flytec/conversation.h"

namespace skyhaul::flytec_simulator {
namespace {

const std::string kDone = "\x13\x11";

// What the simulator answers to one body after the other.
std::string Answers(Simulator& simulator, const std::vector<std::string>& bodies) {
  std::string request;
  for (const std::string& body : bodies) request += InstrumentSentence(body);
  return AnswerTo(simulator, request);
}

std::string Answer(char code) {
  return "\x13" + InstrumentSentence(std::string("PBRANS,") + code) + "\x11";
}

const std::string kWaypointUpload = "PBRWPR,4743.564,N,01121.571,E,,Urthaler Hof     ,0620";
const std::vector<std::string> kAirspaceUpload = {"PBRCTRW,003,000,Kreisbogen       ,3440",
                                                  "PBRCTRW,003,001,Remark Kreisbogen",
                                                  "PBRCTRW,003,002,C,4710.001,N,01104.700,E,12345"};

TEST(FlytecUpload, WhatWasTakenIsListed) {
  Simulator simulator;
  EXPECT_EQ(Answers(simulator, {kWaypointUpload}), kDone);
  EXPECT_EQ(Answers(simulator, {"PBRWPS,"}),
            "\x13$PBRWPS,4743.564,N,01121.571,E,URT062,Urthaler Hof     ,0620*03\r\n\x11");
  EXPECT_EQ(Answers(simulator, kAirspaceUpload), kDone + kDone + Answer('1'));
  EXPECT_EQ(Answers(simulator, {"PBRCTR,"}),
            "\x13$PBRCTR,003,000,Kreisbogen       ,3440*02\r\n"
            "$PBRCTR,003,001,Remark Kreisbogen*0E\r\n"
            "$PBRCTR,003,002,C,4710.001,N,01104.700,E,12345*4D\r\n"
            "$PBRANS,1*01\r\n\x11");
}

TEST(FlytecUpload, WhatIsNotAnUploadIsNotAnswered) {
  Simulator simulator;
  EXPECT_EQ(Answers(simulator, {"PBRWPR,nonsense", "PBRWPR,", "PBRCTRW,", "PBRCTRW,3,0,A,1"}), "");
  EXPECT_TRUE(simulator.waypoints.empty());
}

TEST(FlytecUpload, RefusesAsToldAndKeepsNothing) {
  const std::tuple<Refusal, std::string, std::string> cases[] = {
      {Refusal::kPlausibility, kDone, kDone + kDone + Answer('2')},
      {Refusal::kMemory, kDone, kDone + kDone + Answer('3')},
      {Refusal::kProtected, kDone, kDone + kDone + Answer('4')},
      {Refusal::kSyntax, kDone, kDone + kDone + Answer('5')},
      {Refusal::kSilent, "", ""},
  };
  for (const auto& [refusal, waypoint_answer, airspace_answer] : cases) {
    Simulator simulator{.refusal = refusal};
    EXPECT_EQ(Answers(simulator, {kWaypointUpload}), waypoint_answer);
    EXPECT_EQ(Answers(simulator, kAirspaceUpload), airspace_answer);
    EXPECT_TRUE(simulator.waypoints.empty() && simulator.airspaces.empty());
  }
}

TEST(FlytecUpload, AFaultyAirspaceIsAnsweredAtItsLastLineAndForgotten) {
  Simulator simulator;
  EXPECT_EQ(Answers(simulator, {kAirspaceUpload[0], kAirspaceUpload[2]}), kDone + Answer('5'));
  EXPECT_EQ(Answers(simulator, kAirspaceUpload), kDone + kDone + Answer('1'));
}

}  // namespace
}  // namespace skyhaul::flytec_simulator
