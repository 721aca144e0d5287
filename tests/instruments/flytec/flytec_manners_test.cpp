// The faults and habits that a test of the driver may ask for, as the other side of the wire sees
// them.

#include <gtest/gtest.h>

#include "tests/instruments/flytec/simulator_talk.h"

namespace skyhaul::flytec_simulator {
namespace {

constexpr uint64_t kSecond_ns = 1'000'000'000;
constexpr uint64_t kByte_ns = 173'611;  // 10 bits at 57600 baud

const std::string kFirst = "$PBRTL,02,00,31.12.89,00:00:00,00:00:00*76\r\n";
const std::string kSecond = "$PBRTL,02,01,31.12.89,00:00:00,00:00:00*77\r\n";

Simulator Mannered(const Manners& manners) {
  return {.flights = {{.igc_text = "ABCDEFGH"}, {.igc_text = "ijkl"}}, .manners = manners};
}

std::string Busy(const std::string& answer) {
  return "\x13" + answer + "\x11";
}

TEST(FlytecManners, AreDoneToTheChosenAnswers) {
  const std::string list = Busy(kFirst + kSecond);
  const std::string flights = Busy("ABCDEFGH") + Busy("ijkl");
  const std::pair<Manners, std::string> cases[] = {
      {{}, list + list + flights},
      {{.request = "PBRTL", .silent = true}, flights},
      {{.request = "PBRTL", .nth = 2, .silent = true}, list + flights},
      {{.request = "PBRTR,01", .lose_xon = true}, list + list + Busy("ABCDEFGH") + "\x13ijkl"},
      {{.request = "PBRTL", .nth = 1, .lines = 1}, Busy(kFirst) + list + flights},
      {{.lines = 0}, Busy("") + Busy("") + flights},
      {{.stall_at = 5}, list + list + "\x13" + "ABCDE" + Busy("ijkl")},
      {{.stall_at = -2, .stall_ns = 1}, list + list + flights},
      {{.cut_at = 3}, list + list + Busy("ABC") + Busy("ijk")},
      {{.cut_at = -5}, list + list + Busy("ABC") + Busy("")},
      {{.request = "PBRTL", .cut_at = 45}, Busy(kFirst + "$") + Busy(kFirst + "$") + flights},
  };
  for (const auto& [manners, expected] : cases) {
    Simulator simulator = Mannered(manners);
    EXPECT_EQ(Answers(simulator, {"PBRTL,", "PBRTL,", "PBRTR,00", "PBRTR,01"}), expected)
        << "manners expecting " << expected;
  }
  Simulator simulator = Mannered({.announced_flights = 7});
  EXPECT_EQ(Answers(simulator, {"PBRTL,"}).substr(0, 14), "\x13$PBRTL,07,00,");
}

TEST(FlytecManners, ASilenceBeginsWhenTheBytesBeforeItHaveLeft) {
  Simulator simulator =
      Mannered({.late_ns = 2 * kSecond_ns, .stall_at = -4, .stall_ns = kSecond_ns});
  SimulatedInstrument instrument = MakeInstrument(simulator, 57600);
  Say(instrument, "$PBRTR,00*6A\r\n");
  EXPECT_EQ(NextArrival_ns(instrument.wire), 2 * kSecond_ns + simulator.xoff_delay_ns + kByte_ns);
  const uint64_t stall_ns =
      2 * kSecond_ns + simulator.xoff_delay_ns + simulator.thinking_ns + 4 * kByte_ns;
  EXPECT_EQ(Hear(instrument, stall_ns + kSecond_ns),
            "\x13"
            "ABCD");
  EXPECT_EQ(NextArrival_ns(instrument.wire), stall_ns + kSecond_ns + kByte_ns);
  EXPECT_EQ(Hear(instrument), "EFGH\x11");
}

TEST(FlytecManners, ABusyInstrumentHearsNothingButXonAndXoff) {
  for (const bool deaf : {true, false}) {
    Simulator simulator = Mannered({.deaf_while_busy = deaf});
    SimulatedInstrument instrument = MakeInstrument(simulator, 57600);
    Say(instrument, "$PBRTR,00*6A\r\n");
    const uint64_t xoff_ns = simulator.xoff_delay_ns;
    // Before its XOFF it still listens, afterwards only when XON has left.
    Say(instrument, "$PBRTR,01*6B\r\n", xoff_ns - 1);
    Say(instrument, "\x13", xoff_ns);
    Say(instrument, "$PBRTL,*74\r\n", 9 * kSecond_ns);
    Say(instrument, "\x11$PBRTL,*74\r\n", 9 * kSecond_ns);
    const std::string list = Busy(kFirst + kSecond);
    const std::string expected = Busy("ABCDEFGH") + Busy("ijkl") + (deaf ? "" : list + list);
    EXPECT_EQ(Hear(instrument), expected);
    Say(instrument, "$PBRTL,*74\r\n", 10 * kSecond_ns);
    EXPECT_EQ(Hear(instrument), list);
  }
}

TEST(FlytecManners, AClosedPortEndsAnAnswerOrLosesItsBytes) {
  for (const bool keep : {false, true}) {
    Simulator simulator = Mannered({.keep_sending = keep});
    SimulatedInstrument instrument = MakeInstrument(simulator, 57600);
    Say(instrument, "$PBRTR,00*6A\r\n");
    const uint64_t text_ns = simulator.xoff_delay_ns + simulator.thinking_ns;
    EXPECT_EQ(Hear(instrument, text_ns + 2 * kByte_ns),
              "\x13"
              "AB");
    TellClosed(instrument);
    EXPECT_EQ(LoseArrived(instrument.wire, text_ns + 5 * kByte_ns), keep ? 3U : 0U);
    EXPECT_EQ(Hear(instrument), keep ? "FGH\x11" : "");
  }
}

}  // namespace
}  // namespace skyhaul::flytec_simulator
