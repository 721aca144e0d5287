#include "app/command_line/parse.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

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
  const std::pair<std::string, std::string> cases[] = {
      {"my flight /EXIT.igc", "my flight /EXIT.igc"},
      {"\"my flight.igc\" dropped", "my flight.igc"},
      {" /EXIT", " /EXIT"},
      {std::string(261, 'x'), std::string(260, 'x')},
  };
  for (const auto& [text, file] : cases) {
    const Parsed parsed = Parse(text);
    EXPECT_EQ(parsed.result, 0) << text;
    EXPECT_TRUE(parsed.block.present) << text;
    EXPECT_EQ(parsed.block.command, Command::kOpenFile) << text;
    EXPECT_EQ(parsed.block.file, file);
  }
}

TEST(Parse, FillsTheBlockFromSwitchesAlsoWhenAllAreQuoted) {
  for (const char* text : {"/gps=iqcompeo /Com=12 /pilot=\"Ann Bee\" /igc_log=\"a b\" /exit",
                           "\"/GPS=IQCOMPEO /COM=12 /PILOT=Ann /IGC_LOG=a /EXIT\" dropped"}) {
    const Parsed parsed = Parse(text);
    EXPECT_EQ(parsed.result, 0) << parsed.message;
    EXPECT_TRUE(parsed.block.present) << text;
    EXPECT_EQ(parsed.block.command, Command::kTrackLogToIgc) << text;
    EXPECT_EQ(parsed.block.gps_type, GpsType::kIqCompeo) << text;
    EXPECT_EQ(parsed.block.port_number, 12U) << text;
    EXPECT_EQ(parsed.block.keywords.size(), 5U) << text;
  }
}

TEST(Parse, FailureLeavesAMessageAndNoBlock) {
  const std::pair<const char*, const char*> cases[] = {
      {"\"/EXIT", "Bad double apostrophe (\") balance"},
      {"/EXIT x", "Error at position 7"},
      {"/EXIT /KEYWORD_THAT_IS_TOO_LONG", "Unrecognized command"},
      {"/EXIT /GPS=MLRC /IGC_LOG=.", "Unsupported GPS for IGC track log download"},
      {"/GPS=IQCOMPEO /FLIGHTLIST", "Missing notify window for flightlist download"},
  };
  for (const auto& [text, message] : cases) {
    const Parsed parsed = Parse(text);
    EXPECT_EQ(parsed.result, -1) << text;
    EXPECT_EQ(parsed.message, message) << text;
    EXPECT_FALSE(parsed.block.present || parsed.block.exit) << text;
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
