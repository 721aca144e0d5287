#include <gtest/gtest.h>

#include "tests/instruments/flytec/simulator_talk.h"

namespace skyhaul::flytec_simulator {
namespace {

constexpr uint64_t kMillisecond_ns = 1'000'000;
constexpr uint64_t kXoffDelay_ns = 750'000;
constexpr uint64_t kByte_ns = 173'611;  // 10 bits at 57600 baud

// Every byte value once, so that nothing on the way can take it for its own.
std::string AllBytes() {
  std::string bytes;
  for (int i = 0; i < 256; ++i) bytes += static_cast<char>(i);
  return bytes;
}

Simulator KnownSimulator() {
  Simulator simulator{
      .device_name = "5030", .pilot_name = "JIMI HENDRIX", .serial = "01001", .software = "2.00"};
  // On 27 April 2017 at 15:29:56 and on 2 January 2009 at midnight.
  simulator.flights = {{.igc_text = "AXSH\r\nB\r\n", .start_time = 862241396, .duration_s = 295},
                       {.igc_text = AllBytes(), .start_time = 599788800, .duration_s = 43234}};
  return simulator;
}

constexpr const char* kProductData = "\x13$PBRSNP,5030,JIMI HENDRIX     ,01001,2.00*64\r\n\x11";
constexpr const char* kFlightList =
    "\x13$PBRTL,02,00,27.04.17,15:29:56,00:04:55*79\r\n"
    "$PBRTL,02,01,02.01.09,00:00:00,12:00:34*79\r\n\x11";

TEST(FlytecSimulator, AnswersWhatItUnderstands) {
  const std::string newest = std::string("\x13") + "AXSH\r\nB\r\n\x11";
  const std::pair<std::string, std::string> cases[] = {
      {"\x11$PBRSNP,*21\r\n", kProductData},
      {"$PBRTR,00*6A\r\n", newest},
      {"$PBRTR,01*6B\r\n", "\x13" + AllBytes() + "\x11"},
      {"$PBRIGC,*21\r\n", newest},
      {"$PBRSNP,\n$PBRTL,*74\r\n", std::string(kProductData) + kFlightList},
      {"PBRTL,*00\r\nxyz$PBRTL,*74\r\n", kFlightList},
      {"$PBRS$PBRTL,*74\r\n", kFlightList},
      {"$PBR\x11TL,*74\r\n", kFlightList},
      {"$" + std::string(500, 'x') + "\r\n$PBRTL,*74\r\n", kFlightList},
  };
  for (const auto& [request, answer] : cases) {
    Simulator simulator = KnownSimulator();
    EXPECT_EQ(AnswerTo(simulator, request), answer) << request;
  }
}

TEST(FlytecSimulator, IsSilentOtherwise) {
  Simulator simulator = KnownSimulator();
  EXPECT_EQ(
      AnswerTo(simulator,
               "$PBRTL,*75\r\n$PBRTR,00*6a\r\n$PBRTL,*740\r\n$PBRTL,*74\rPBRTL,*74\r\n"
               "$PBRXYZ,*37\r\n$PBRTR,02*68\r\n$PBRTR,0*5A\r\n$PBRTR,0A*1B\r\n"
               "$PBRTL,0*44\r\n$\r\n$*00\r\n\r\n" +
                   InstrumentSentence("PBRWPR,nonsense") + InstrumentSentence("PBRCTRW,3,0,A,1")),
      "");
  // An empty memory has an empty list and no flight.
  simulator.flights = {};
  EXPECT_EQ(AnswerTo(simulator, "$PBRTL,*74\r\n$PBRTR,00*6A\r\n$PBRIGC,*21\r\n"), "\x13\x11");
}

TEST(FlytecSimulator, TakesItsTime) {
  Simulator simulator = KnownSimulator();
  simulator.thinking_ns = 40 * kMillisecond_ns;
  simulator.line_gap_ns = 100 * kMillisecond_ns;
  SimulatedInstrument instrument = MakeInstrument(simulator, 57600);
  constexpr uint64_t kAsked_ns = 5 * kMillisecond_ns;
  Say(instrument, "$PBRTL,*74\r\n", kAsked_ns);
  constexpr uint64_t kXoff_ns = kAsked_ns + kXoffDelay_ns + kByte_ns;
  EXPECT_EQ(Hear(instrument, kXoff_ns - 1), "");
  EXPECT_EQ(Hear(instrument, kXoff_ns), "\x13");
  constexpr uint64_t kAnswer_ns = kAsked_ns + kXoffDelay_ns + 40 * kMillisecond_ns;
  EXPECT_EQ(NextArrival_ns(instrument.wire), kAnswer_ns + kByte_ns);
  const std::string line = Hear(instrument, kAnswer_ns + 99 * kMillisecond_ns);
  EXPECT_EQ(line, "$PBRTL,02,00,27.04.17,15:29:56,00:04:55*79\r\n");
  EXPECT_EQ(NextArrival_ns(instrument.wire), kAnswer_ns + 100 * kMillisecond_ns + kByte_ns);
  EXPECT_EQ(Hear(instrument, kAnswer_ns + 199 * kMillisecond_ns).back(), '\n');
  EXPECT_EQ(Hear(instrument, kAnswer_ns + 200 * kMillisecond_ns + kByte_ns), "\x11");
}

TEST(FlytecSimulator, StopsOnXoffAndGoesOnWhereItWas) {
  Simulator simulator = KnownSimulator();
  SimulatedInstrument instrument = MakeInstrument(simulator, 57600);
  Say(instrument, "$PBRSNP,*21\r\n");
  const uint64_t some_ns = kXoffDelay_ns + simulator.thinking_ns + 5 * kByte_ns;
  std::string heard = Hear(instrument, some_ns);
  EXPECT_EQ(heard, "\x13$PBRS");
  Say(instrument, "\x13", some_ns);
  EXPECT_EQ(NextArrival_ns(instrument.wire), kNever_ns);
  EXPECT_EQ(Hear(instrument, 1000 * kMillisecond_ns), "");
  Say(instrument, "\x11", 1000 * kMillisecond_ns);
  // No burst of what could have been sent in the meantime.
  EXPECT_EQ(NextArrival_ns(instrument.wire), 1000 * kMillisecond_ns + kByte_ns);
  heard += Hear(instrument);
  EXPECT_EQ(heard, kProductData);
}

TEST(FlytecSimulator, TellsWhatBecameOfASentence) {
  Simulator simulator = KnownSimulator();
  std::string told;
  simulator.log_context = &told;
  simulator.log = [](void* context, std::string_view text, uint64_t) {
    *static_cast<std::string*>(context) += std::string(text) + "\n";
  };
  AnswerTo(simulator, "$PBRTL,*74\r\n$PBRTL,*75\r\n$PBRTR,05*6F\r\n");
  EXPECT_EQ(told,
            "answering $PBRTL,*74\n"
            "no sound checksum: $PBRTL,*75\n"
            "nothing to answer: $PBRTR,05*6F\n");
}

const std::string kDone = "\x13\x11";

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

TEST(FlytecUpload, RefusesAsToldAndKeepsNothing) {
  const std::pair<Refusal, std::string> cases[] = {
      {Refusal::kPlausibility, Answer('2')},
      {Refusal::kMemory, Answer('3')},
      {Refusal::kProtected, Answer('4')},
      {Refusal::kSyntax, Answer('5')},
      {Refusal::kSilent, ""},
  };
  for (const auto& [refusal, answer] : cases) {
    Simulator simulator{.refusal = refusal};
    const std::string done = answer.empty() ? "" : kDone;
    EXPECT_EQ(Answers(simulator, {kWaypointUpload}), done);
    EXPECT_EQ(Answers(simulator, kAirspaceUpload), std::string(done).append(done).append(answer));
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
