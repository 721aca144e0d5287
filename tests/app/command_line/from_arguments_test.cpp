#include "app/command_line/from_arguments.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace skyhaul {
namespace {

ArgumentText Convert(const std::vector<std::string>& arguments, const std::string& existing = {}) {
  return CommandTextFromArguments(
      arguments, [&](const std::string& path) { return !existing.empty() && path == existing; });
}

TEST(FromArguments, ExistingFilesAreFilesWhateverTheyLookLike) {
  for (const char* name :
       {"flight.igc", "/tmp/flight.igc", "my flight.igc", "\"quoted\".igc", "/PILOT=First Last"}) {
    const ArgumentText result = Convert({name}, name);
    EXPECT_EQ(result.files, std::vector<std::string>{name});
    EXPECT_EQ(result.text, "");
  }
  const ArgumentText between = Convert({"/EXIT", "/a/flight.igc", "/USB"}, "/a/flight.igc");
  EXPECT_EQ(between.files, std::vector<std::string>{"/a/flight.igc"});
  EXPECT_EQ(between.text, "/EXIT /USB");
}

TEST(FromArguments, RebuildsTheCommandLine) {
  const struct {
    std::vector<std::string> arguments;
    const char* text;
  } cases[] = {
      {{}, ""},
      {{""}, ""},
      {{"/EXIT"}, "/EXIT"},
      {{"/GPS=IQCOMPEO", "/COM=1"}, "/GPS=IQCOMPEO /COM=1"},
      {{"/PILOT=First Last", "/EXIT"}, "/PILOT=\"First Last\" /EXIT"},
      {{"/PILOT=First\tLast"}, "/PILOT=\"First\tLast\""},
      {{"/PILOT= "}, "/PILOT=\" \""},
      {{"/PILOT=a=b c"}, "/PILOT=\"a=b c\""},
      {{"/PILOT=\"First Last\""}, "/PILOT=\"First Last\""},
      {{"/PILOT=First \"F\" Last"}, "/PILOT=First \"F\" Last"},
      {{"/PILOT="}, "/PILOT="},
      {{"", "/EXIT", "", "/USB"}, "/EXIT /USB"},
      {{"/EXIT", "name=a b"}, "/EXIT name=a b"},
      {{"missing.igc"}, "missing.igc"},
      {{"my", "flight.igc"}, "my flight.igc"},
      {{"my", "/x=a b"}, "my /x=a b"},
  };
  for (const auto& c : cases) {
    const ArgumentText result = Convert(c.arguments);
    EXPECT_TRUE(result.files.empty());
    EXPECT_EQ(result.text, c.text);
  }
}

TEST(FromArguments, AWholeCommandLineIsKeptWhenItsQuotesStandAroundValues) {
  const struct {
    const char* text;
    bool reads;
  } cases[] = {
      {"/EXIT", true},
      {"/IGC_LOG=\"C:\\My flights\\\" /EXIT", true},
      {"/igc_log=flights  /PILOT=\"First Last\"", true},
      {"", false},
      {"flight.igc", false},
      {"\"C:\\My flights\\a.igc\"", false},
      {"--info flight.igc", false},
      {"\"/PILOT=First Last\" /EXIT", false},
      {"/EXIT \"/PILOT=First Last\"", false},
      {"/EXIT flight.igc", false},
  };
  for (const auto& c : cases) EXPECT_EQ(ReadsAsSwitches(c.text), c.reads) << c.text;
}

}  // namespace
}  // namespace skyhaul
