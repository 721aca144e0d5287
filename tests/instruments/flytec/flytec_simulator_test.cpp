#include "instruments/flytec/flytec_simulator.h"

#include <gtest/gtest.h>

#include "core/time_scale.h"
#include "tests/instruments/flytec/conversation.h"

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
  Simulator simulator{.device_name = "5030", .software = "2.00"};
  simulator.pilot_name = "JIMI HENDRIX";
  simulator.serial = "01001";
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
  const std::string newest =
      "\x13"
      "AXSH\r\nB\r\n\x11";
  const std::tuple<const char*, std::string, std::string> cases[] = {
      {"product data", "\x11$PBRSNP,*21\r\n", kProductData},
      {"newest flight", "$PBRTR,00*6A\r\n", newest},
      {"flight byte for byte", "$PBRTR,01*6B\r\n", "\x13" + AllBytes() + "\x11"},
      {"flight on the screen", "$PBRIGC,*21\r\n", newest},
      {"no checksum", "$PBRSNP,\r\n", kProductData},
      {"no carriage return", "$PBRTL,*74\n", kFlightList},
      {"garbage before", "PBRTL,*00\r\nxyz$PBRTL,*74\r\n", kFlightList},
      {"broken off and begun again", "$PBRS$PBRTL,*74\r\n", kFlightList},
      {"flow control inside", "$PBR\x11TL,*74\r\n", kFlightList},
      {"two in a row", "$PBRTL,*74\r\n$PBRSNP,*21\r\n", std::string(kFlightList) + kProductData},
      {"after an endless one", "$" + std::string(500, 'x') + "\r\n$PBRTL,*74\r\n", kFlightList},
  };
  for (const auto& [name, request, answer] : cases) {
    Simulator simulator = KnownSimulator();
    EXPECT_EQ(AnswerTo(simulator, request), answer) << name;
  }
}

TEST(FlytecSimulator, IsSilentOtherwise) {
  const char* const cases[] = {"$PBRTL,*75\r\n",  "$PBRTR,00*6a\r\n", "$PBRTL,*7\r\n",
                               "$PBRTL,*740\r\n", "$PBRTL,*74\r",     "PBRTL,*74\r\n",
                               "$PBRXYZ,*37\r\n", "$PBRTR,00\r\n",    "$PBRTR,02*68\r\n",
                               "$PBRTR,0*5A\r\n", "$PBRTR,0A*1B\r\n", "$PBRTL,0*44\r\n",
                               "$\r\n",           "$*00\r\n",         "\r\n\n\r"};
  for (const char* request : cases) {
    Simulator simulator = KnownSimulator();
    EXPECT_EQ(AnswerTo(simulator, request), "") << request;
  }
}

TEST(FlytecSimulator, EmptyMemoryHasAnEmptyListAndNoFlight) {
  Simulator simulator;
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
  EXPECT_EQ(NextArrival_ns(instrument.wire), kXoff_ns);
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
  SimulatedInstrument instrument = MakeInstrument(simulator, 0);
  Say(instrument, "$PBRTL,*74\r\n$PBRTL,*75\r\n$PBRTR,05*6F\r\n");
  EXPECT_EQ(told,
            "answering $PBRTL,*74\n"
            "no sound checksum: $PBRTL,*75\n"
            "nothing to answer: $PBRTR,05*6F\n");
}

TEST(FlightFromIgc, FindsTheTimes) {
  constexpr CalendarTime kNoon{.year = 2021, .month = 8, .day = 5, .hour = 12};
  constexpr CalendarTime kLate{
      .year = 2021, .month = 8, .day = 5, .hour = 23, .minute = 59, .second = 58};
  const std::tuple<const char*, CalendarTime, uint32_t> cases[] = {
      {"AXSH000\r\nHFDTE050821\r\nB1200004700000N01100000EA0100001050\r\n"
       "B1201404700000N01100000EA0100001050\r\n",
       kNoon, 100},
      {"AXSH000\r\nHFDTEDATE:050821,01\r\nB2359584700000N01100000EA0100001050\r\n"
       "B0000084700000N01100000EA0100001050\r\n",
       kLate, 10},
      // Damaged, but readable.
      {"HFDTE050821\nB120000\nB47\nBxxxxxx\nB120140 and no position\n", kNoon, 100},
      {"HFDTEDATE: 050821\nB235958\nB000008", kLate, 10},
      {"HFDTE0508\r\nB120000\r\n", {.year = 1989, .month = 12, .day = 31, .hour = 12}, 0},
      {"\r\n\n", {}, 0},
      {"", {}, 0},
  };
  for (const auto& [text, start, duration_s] : cases) {
    const StoredFlight flight = FlightFromIgc(text);
    EXPECT_EQ(flight.igc_text, text);
    EXPECT_EQ(CalendarFromTime(flight.start_time), start) << text;
    EXPECT_EQ(flight.duration_s, duration_s) << text;
  }
}

TEST(FlightFromIgc, NewestComesFirst) {
  std::vector<StoredFlight> flights = {{.igc_text = "old", .start_time = 1},
                                       {.igc_text = "new", .start_time = 3},
                                       {.igc_text = "middle", .start_time = 2}};
  SortNewestFirst(flights);
  EXPECT_EQ(flights[0].igc_text + flights[1].igc_text + flights[2].igc_text, "newmiddleold");
}

}  // namespace
}  // namespace skyhaul::flytec_simulator
