#include "app/command_line/parse.h"

#include <gtest/gtest.h>

#include <string>

namespace skyhaul {
namespace {

struct Parsed {
  int result;
  std::string message;
  CommandLineBlock block;
};

Parsed Parse(const std::string& text) {
  Parsed parsed = {};
  parsed.block.pilot = "left over";
  parsed.message = "left over";
  parsed.result = ParseCommandLine(text, {}, parsed.block, parsed.message);
  return parsed;
}

TEST(Parse, EmptyTextIsNoBatchRun) {
  const Parsed parsed = Parse("");
  EXPECT_EQ(parsed.result, 0);
  EXPECT_EQ(parsed.message, "");
  EXPECT_FALSE(parsed.block.present);
  EXPECT_EQ(parsed.block.pilot, "");
}

TEST(Parse, TextWithoutASlashIsOneFile) {
  const struct {
    std::string text;
    std::string file;
  } cases[] = {
      {"flight.igc", "flight.igc"},
      {"my flight /EXIT.igc", "my flight /EXIT.igc"},
      {"\"my flight.igc\" dropped", "my flight.igc"},
      {" /EXIT", " /EXIT"},
      {std::string(261, 'x'), std::string(260, 'x')},
  };
  for (const auto& c : cases) {
    const Parsed parsed = Parse(c.text);
    EXPECT_EQ(parsed.result, 0) << c.text;
    EXPECT_TRUE(parsed.block.present) << c.text;
    EXPECT_EQ(parsed.block.command, Command::kOpenFile) << c.text;
    EXPECT_EQ(parsed.block.gps_type, GpsType::kGarmin) << c.text;
    EXPECT_EQ(parsed.block.file, c.file);
  }
}

TEST(Parse, FillsTheBlockFromSwitches) {
  const Parsed parsed =
      Parse("/gps=IQCOMPEO /com=12 /track=2-3 /pilot=\"Ann Bee\" /igc_log=\"my flights\" /exit");
  EXPECT_EQ(parsed.result, 0) << parsed.message;
  EXPECT_TRUE(parsed.block.present);
  EXPECT_EQ(parsed.block.command, Command::kTrackLogToIgc);
  EXPECT_EQ(parsed.block.gps_type, GpsType::kIqCompeo);
  EXPECT_EQ(parsed.block.port_number, 12U);
  EXPECT_EQ(parsed.block.tracks, (std::vector<uint32_t>{2, 3}));
  EXPECT_EQ(parsed.block.pilot, "Ann Bee");
  EXPECT_EQ(parsed.block.file, "my flights");
  EXPECT_TRUE(parsed.block.exit);
}

TEST(Parse, QuotedWholeIsParsedWithoutItsQuotes) {
  const Parsed parsed = Parse("\"/GPS=garmin /EXIT\" x");
  EXPECT_EQ(parsed.result, 0) << parsed.message;
  EXPECT_TRUE(parsed.block.exit);
}

TEST(Parse, FailureLeavesAMessageAndNoBlock) {
  const struct {
    const char* text;
    const char* message;
  } cases[] = {
      {"\"/EXIT", "Bad double apostrophe (\") balance"},
      {"/EXIT x", "Error at position 7"},
      {"\"/EXIT x\"", "Error at position 7"},
      {"/EXIT /KEYWORD_THAT_IS_TOO_LONG", "Unrecognized command"},
      {"/EXIT /COM=0 x", "Bad COM port"},
      {"/EXIT /GPS=MLRC /IGC_LOG=.", "Unsupported GPS for IGC track log download"},
      {"/GPS=IQCOMPEO /FLIGHTLIST", "Missing notify window for flightlist download"},
      {"/WPTSRC=a", "Missing file name(s) for waypoint file conversion"},
  };
  for (const auto& c : cases) {
    const Parsed parsed = Parse(c.text);
    EXPECT_EQ(parsed.result, -1) << c.text;
    EXPECT_EQ(parsed.message, c.message) << c.text;
    EXPECT_FALSE(parsed.block.present) << c.text;
    EXPECT_FALSE(parsed.block.exit) << c.text;
  }
}

TEST(ParseArguments, OneFileToOpenAndNoCommandBesideIt) {
  const struct {
    ArgumentText arguments;
    const char* message;
    const char* file;
  } cases[] = {
      {{{"/a/b.igc"}, ""}, "", "/a/b.igc"},
      {{{"/a/b.igc"}, "/EXIT"}, "", "/a/b.igc"},
      {{{}, "c.igc"}, "", "c.igc"},
      {{{"a.igc", "b.igc"}, ""}, "Only one file can be opened", ""},
      {{{"a.igc"}, "missing.igc"}, "Only one file can be opened", ""},
      {{{"a.igc"}, "/IGC_LOG=x /GPS=IQCOMPEO"}, "A file to open does not go with a command", ""},
      {{{"a.igc"}, "/NONSENSE"}, "Unrecognized command", ""},
  };
  for (const auto& c : cases) {
    CommandLineBlock block;
    std::string message;
    EXPECT_EQ(ParseArguments(c.arguments, {}, block, message), *c.message == 0 ? 0 : -1);
    EXPECT_EQ(message, c.message);
    EXPECT_EQ(block.file, c.file);
    EXPECT_EQ(block.present, *c.message == 0);
  }
}

}  // namespace
}  // namespace skyhaul
