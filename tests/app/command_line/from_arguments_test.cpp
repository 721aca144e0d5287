#include "app/command_line/from_arguments.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace skyhaul {
namespace {

using Words = std::vector<std::string>;

ArgumentText Convert(const Words& words, const std::string& existing = {},
                     const std::string& typed = {}) {
  return CommandTextFromArguments(
      words, typed, [&](const std::string& path) { return !existing.empty() && path == existing; });
}

TEST(FromArguments, ExistingFilesAreFilesWhateverTheyLookLike) {
  for (const char* name : {"/tmp/a.igc", "\"quoted\".igc", "/PILOT=First Last"}) {
    EXPECT_EQ(Convert({"/EXIT", name, "/USB"}, name),
              (ArgumentText{.files = {name}, .text = "/EXIT /USB"}));
  }
}

TEST(FromArguments, RebuildsTheCommandLineFromWords) {
  const std::pair<Words, const char*> cases[] = {
      {{"/PILOT=First Last", "/EXIT"}, "/PILOT=\"First Last\" /EXIT"},
      {{"/PILOT=a=b c"}, "/PILOT=\"a=b c\""},
      {{"/PILOT=First \"F\" Last"}, "/PILOT=First \"F\" Last"},
      {{"", "/EXIT", "", "/USB"}, "/EXIT /USB"},
      {{"my", "/x=a b"}, "my /x=a b"},
      // One word with all switches, unless it is a value that holds " /".
      {{"/GPS=IQCOMPEO /EXIT"}, "/GPS=IQCOMPEO /EXIT"},
      {{"/IGC2KML=/my /flight.igc"}, "/IGC2KML=\"/my /flight.igc\""},
      {{"/PILOT=A /EXIT", "/USB"}, "/PILOT=\"A /EXIT\" /USB"},
  };
  for (const auto& [words, text] : cases) {
    EXPECT_EQ(Convert(words), (ArgumentText{.files = {}, .text = text}));
  }
}

TEST(FromArguments, TextIsTakenAsTypedWhenItsQuotesStandAroundValuesOrAroundAll) {
  const std::pair<const char*, bool> cases[] = {
      {"/IGC_LOG=\"C:\\My flights\\\" /EXIT", true},
      {"\"/GPS=IQCOMPEO /EXIT\" dropped", true},
      {"\"/EXIT\" ", true},
      {"\"/EXIT\" /USB", false},
      {"\"/PILOT=First", false},
      {"", false},
      {"\"C:\\My flights\\a.igc\"", false},
      {"/EXIT flight.igc", false},
  };
  for (const auto& [typed, as_typed] : cases) {
    EXPECT_EQ(Convert({"split"}, {}, typed).text, as_typed ? typed : "split");
  }
}

}  // namespace
}  // namespace skyhaul
