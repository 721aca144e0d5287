#include "app/command_line/long_options.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace skyhaul {
namespace {

using Arguments = std::vector<std::string>;

TEST(LongOptions, AreRecognisedByTheFirstArgument) {
  EXPECT_TRUE(HasLongOptions(Arguments{"--help"}));
  EXPECT_TRUE(HasLongOptions(Arguments{"--"}));
  EXPECT_FALSE(HasLongOptions(Arguments{}));
  EXPECT_FALSE(HasLongOptions(Arguments{"/EXIT", "--help"}));
  EXPECT_FALSE(HasLongOptions(Arguments{"-h"}));
}

TEST(LongOptions, Accepts) {
  const struct {
    Arguments arguments;
    Arguments files;
    LongCommand command = LongCommand::kHelp;
    bool json = false;
  } cases[] = {
      {{"--help"}, {}, LongCommand::kHelp, false},
      {{"--info", "a", "--json", "b"}, {"a", "b"}, LongCommand::kInfo, true},
      {{"--json", "--info", "a"}, {"a"}, LongCommand::kInfo, true},
      {{"--score", "a", "--gap", "5", "--json"}, {"a"}, LongCommand::kScore, true},
      {{"--check", "--", "-a", "--json", "--"}, {"-a", "--json", "--"}, LongCommand::kCheck, false},
      {{"--set", "A=-1", "--set", "B="}, {"A=-1", "B="}, LongCommand::kSet, false},
      {{"--check", "--check", "a"}, {"a"}, LongCommand::kCheck, false},
  };
  for (const auto& c : cases) {
    LongOptions options;
    std::string message;
    EXPECT_EQ(ParseLongOptions(c.arguments, options, message), 0) << message;
    EXPECT_EQ(message, "");
    EXPECT_EQ(options.command, c.command) << c.arguments[0];
    EXPECT_EQ(options.files, c.files) << c.arguments[0];
    EXPECT_EQ(IsGiven(options, SideOption::kJson), c.json) << c.arguments[0];
  }
}

TEST(LongOptions, SideOptionsHaveValues) {
  LongOptions options;
  std::string message;
  const Arguments arguments = {"--convert", "a", "--format", "--json", "b", "--overwrite"};
  ASSERT_EQ(ParseLongOptions(arguments, options, message), 0) << message;
  EXPECT_EQ(ValueOf(options, SideOption::kFormat), "--json");
  EXPECT_TRUE(IsGiven(options, SideOption::kOverwrite));
  EXPECT_FALSE(IsGiven(options, SideOption::kJson));
  EXPECT_EQ(options.files, (Arguments{"a", "b"}));
}

TEST(LongOptions, SaysWhatIsWrong) {
  const std::pair<Arguments, const char*> cases[] = {
      {{"--chek", "a"}, "Unknown option \"--chek\" (did you mean \"--check\"?)"},
      {{"--info", "-json", "a"}, "Unknown option \"-json\" (did you mean \"--json\"?)"},
      {{"--transmogrify"}, "Unknown option \"--transmogrify\" (see \"--help\")"},
      {{"--info"}, "Missing file name after \"--info\""},
      {{"--ports", "a", "b"}, "Unexpected \"a\" after \"--ports\""},
      {{"--info", "--check", "a"}, "\"--info\" and \"--check\" cannot be combined"},
      {{"--", "--info"}, "No option says what to do (see \"--help\")"},
      {{"--set"}, "Missing NAME=VALUE after \"--set\""},
      {{"--convert", "a", "b", "c"}, "Unexpected \"c\" after \"--convert\""},
      {{"--convert", "a", "b", "--format"}, "Missing value after \"--format\""},
      {{"--info", "a", "--format", "kml"}, "\"--format\" does not go with \"--info\""},
  };
  for (const auto& [arguments, expected] : cases) {
    LongOptions options;
    std::string message;
    EXPECT_EQ(ParseLongOptions(arguments, options, message), -1) << expected;
    EXPECT_EQ(message, expected);
  }
}

}  // namespace
}  // namespace skyhaul
