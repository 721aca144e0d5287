#include "instruments/replay.h"

#include <gtest/gtest.h>

#include "instruments/anonymise.h"

namespace skyhaul {
namespace {

constexpr uint64_t kMillisecond_ns = 1'000'000;

// What has arrived by then.
std::string Arrived(SimulatedInstrument& instrument, uint64_t now_ms) {
  uint8_t buffer[100];
  const size_t count =
      TakeArrived(instrument.wire, now_ms * kMillisecond_ns, buffer, sizeof buffer);
  return {buffer, buffer + count};
}

void Say(SimulatedInstrument& instrument, std::string_view bytes, uint64_t now_ms) {
  for (const char c : bytes) {
    instrument.receive(instrument.state, instrument.wire, static_cast<uint8_t>(c),
                       now_ms * kMillisecond_ns);
  }
}

void Collect(void* context, std::string_view text, uint64_t /*now_ns*/) {
  *static_cast<std::string*>(context) += std::string(text) + '\n';
}

// Two jobs; the second answer comes in two parts, and one word of the host's has no line end.
const std::vector<SpokenLine> kLines = {
    {.time_ms = 100, .speaker = Speaker::kInstrument, .bytes = "hello", .line_number = 1},
    {.time_ms = 1000, .speaker = Speaker::kHost, .bytes = "\x11$A\r", .line_number = 2},
    {.time_ms = 1006, .speaker = Speaker::kHost, .bytes = "\n$B\r\n", .line_number = 3},
    {.time_ms = 1306, .speaker = Speaker::kInstrument, .bytes = "one", .line_number = 4},
    {.time_ms = 2006, .speaker = Speaker::kInstrument, .bytes = "two", .line_number = 5},
    {.time_ms = 0, .speaker = Speaker::kHost, .bytes = "w", .line_number = 7},
    {.time_ms = 50, .speaker = Speaker::kInstrument, .bytes = "three", .line_number = 8},
    {.time_ms = 60, .speaker = Speaker::kHost, .bytes = "$C\r\n", .line_number = 9},
    {.time_ms = 90, .speaker = Speaker::kInstrument, .bytes = "four", .line_number = 10},
};

TEST(Replay, AnswersWithThePausesOfTheFile) {
  Replay replay{.turns = TurnsOf(kLines)};
  SimulatedInstrument instrument = MakeReplayInstrument(replay);
  EXPECT_EQ(Arrived(instrument, 99), "");
  EXPECT_EQ(Arrived(instrument, 5000), "hello");
  Say(instrument, "$A\r\n", 5000);
  Say(instrument, "\x11$B\r\n", 7000);
  EXPECT_EQ(Arrived(instrument, 7299), "");
  EXPECT_EQ(Arrived(instrument, 7999), "one");
  Say(instrument, "\x13", 7999);
  EXPECT_EQ(Arrived(instrument, 8000), "");
  Say(instrument, "\x11", 8100);
  EXPECT_EQ(Arrived(instrument, 8100), "two");
  Say(instrument, "w", 9000);
  EXPECT_EQ(Arrived(instrument, 9049), "");
  EXPECT_EQ(Arrived(instrument, 9050), "three");
}

TEST(Replay, TellsWhatTheHostDoesOtherwise) {
  std::string told;
  Replay replay{.turns = TurnsOf(kLines), .at_once = true, .log = Collect, .log_context = &told};
  SimulatedInstrument instrument = MakeReplayInstrument(replay);
  Say(instrument, "$X\r\n", 1);
  Say(instrument, "$B", 1000);
  Say(instrument, "$B\r\n", 1501);
  EXPECT_EQ(Arrived(instrument, 1501), "helloonetwo");
  Say(instrument, "$A\r\n", 2000);
  Say(instrument, "$C\r\n", 2000);
  EXPECT_EQ(Arrived(instrument, 2000), "four");
  Say(instrument, "$C\r\n", 3000);
  EXPECT_EQ(Arrived(instrument, 9000), "");
  EXPECT_EQ(told,
            "no answer to \"$X\": the file has \"$A\" on line 2\n"
            "no answer to \"$B\": the file has \"$A\" on line 2\n"
            "the host sent \"$B\", so 1 of its lines are left out, from line 2 of the file to 3\n"
            "no answer to \"$A\": the file has \"w\" on line 7\n"
            "the host sent \"$C\", so 1 of its lines are left out, from line 7 of the file to 9\n"
            "no answer to \"$C\": the file has no further line of the host's\n");
}

TEST(Anonymise, BlanksWhatTellsWhoItWas) {
  const std::pair<const char*, const char*> cases[] = {
      {"$PBRSNP,6030,ANNA MUSTER      ,01001,3.30*0E\r\n",
       "$PBRSNP,6030,XXXX XXXXXX      ,00000,3.30*06\r\n"},
      // Wrong by bit 0 before and after.
      {"$PBRSNP,6030,ANNA MUSTER      ,01001,3.30*0F",
       "$PBRSNP,6030,XXXX XXXXXX      ,00000,3.30*07"},
      // Interrupted in the middle of the name, and another sentence behind it.
      {"$PBRSNP,6030,AN$PBRTL,*74\r\n", "$PBRSNP,6030,XX$PBRTL,*74\r\n"},
      {"$PBRMEMR,0000,41,4E,FF,41,20,4D,55,53*7E", "$PBRMEMR,0000,00,00,00,00,00,00,00,00*7B"},
      {"AFLY01001FLIGHT:1\r\n", "AFLY00000XXXXXX:1\r\n"},
      {"HFPLTPILOTINCHARGE:Jos\xE9 M.\r\n", "HFPLTPILOTINCHARGE:XXXX XX\r\n"},
      {"HPGIDD-1234\r\n", "HPGIDXX0000\r\n"},
      {"HFDTE240526\r\n", "HFDTE240526\r\n"},
      // Damaged: a bent name, a lost '$', a lost line end, noise.
      {"$PBRSNQ,6030,ANNA MUSTER", "$PBRSNQ,6030,XXXX XXXXXX"},
      {"PBRSNP,6030,ANNA MUSTER,01001", "PBRSNP,6030,XXXX XXXXXX,00000"},
      {"HFDTE240526HFGIDGLIDERID:D-1234", "HFDTE240526HFGIDGLIDERID:XX0000"},
      {"\x7F\xFE\x01"
       "AFLY01001",
       "\x7F\xFE\x01"
       "AFLY00000"},
  };
  for (const auto& [line, expected] : cases) EXPECT_EQ(AnonymiseLine(line), expected);
}

// A name on two lines of the file with XOFF inside, the host's words between them, a line cut off
// in each of two runs; and the same name where nothing else tells what it is.
TEST(Anonymise, PutsTogetherWhatOneSideSaid) {
  const auto file = [](const std::string& first, const std::string& second) {
    std::string text = "   0.000 remark      of ANNA\n";
    const auto add = [&](uint64_t time_ms, Speaker speaker, const std::string& bytes) {
      text += FormatSpokenLine({.time_ms = time_ms, .speaker = speaker, .bytes = bytes});
    };
    add(1, Speaker::kInstrument, first);
    add(2, Speaker::kHost, "\x11$PBRTL,*74\r\n");
    add(9, Speaker::kInstrument, second);
    return text;
  };
  std::string anonymous;
  std::string message;
  const std::string cut = "   0.012 instrument  41 4E 4E 41  |AN";
  const std::string before = file("$PBRSNP,6030,AN\x13N", "A MUSTER      ,01001,3.30*0E\r\n") +
                             cut + '\n' +
                             file("$?,ANNA MUSTER*41\rHFPLT:ANNA\r", "B1201001N;01001\r\n") + cut;
  EXPECT_EQ(AnonymiseConversation(before, anonymous, message), 4) << message;
  EXPECT_EQ(anonymous, file("$PBRSNP,6030,XX\x13X", "X XXXXXX      ,00000,3.30*06\r\n") +
                           file("$?,XXXX XXXXXX*49\rHFPLT:XXXX\r", "B1201001N;00000\r\n"));
}

}  // namespace
}  // namespace skyhaul
