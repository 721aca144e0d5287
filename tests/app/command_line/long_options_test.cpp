#include "app/command_line/long_options.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "app/command_line/score_options.h"

namespace skyhaul {
namespace {

using Arguments = std::vector<std::string>;

TEST(LongOptions, AreRecognisedByTheFirstArgument) {
  EXPECT_TRUE(HasLongOptions(Arguments{"--"}));
  EXPECT_FALSE(HasLongOptions(Arguments{}));
  EXPECT_FALSE(HasLongOptions(Arguments{"/EXIT", "--help"}));
}

TEST(LongOptions, Accepts) {
  const struct {
    Arguments arguments;
    Arguments files;
    LongCommand command;
    uint32_t given = 0;
    std::string format = {};
  } cases[] = {
      {{"--json", "--info", "a"}, {"a"}, LongCommand::kInfo, Sides(SideOption::kJson)},
      {{"--check", "--", "-a", "--json", "--"}, {"-a", "--json", "--"}, LongCommand::kCheck},
      {{"--set", "A=-1", "--set", "B="}, {"A=-1", "B="}, LongCommand::kSet},
      {{"--convert", "a", "--format", "--json", "b", "--overwrite"},
       {"a", "b"},
       LongCommand::kConvert,
       Sides(SideOption::kFormat, SideOption::kOverwrite),
       "--json"},
  };
  for (const auto& c : cases) {
    LongOptions options;
    std::string message;
    EXPECT_EQ(ParseLongOptions(c.arguments, options, message), 0) << message;
    EXPECT_EQ(message, "");
    EXPECT_EQ(options.command, c.command) << c.arguments[0];
    EXPECT_EQ(options.files, c.files) << c.arguments[0];
    EXPECT_EQ(options.given, c.given) << c.arguments[0];
    EXPECT_EQ(ValueOf(options, SideOption::kFormat), c.format);
  }
}

TEST(LongOptions, TheTraceIsTakenOutOfAnyArguments) {
  const struct {
    Arguments arguments;
    Arguments left;
    std::optional<std::string> file;
    int result = 0;
  } cases[] = {
      {{"/EXIT", "--trace", "a", "--trace", "--b"}, {"/EXIT"}, "--b"},
      {{"--info", "--", "--trace", "a"}, {"--info", "--", "--trace", "a"}, {}},
      {{"--info", "a", "--trace"}, {"--info", "a", "--trace"}, {}, -1},
      {{"--trace", ""}, {"--trace", ""}, {}, -1},
  };
  for (const auto& c : cases) {
    Arguments left = c.arguments;
    std::optional<std::string> file;
    std::string message;
    EXPECT_EQ(TakeOption(left, kTraceOption, file, message), c.result);
    EXPECT_EQ(message, c.result == 0 ? "" : "Missing value after \"--trace\"");
    EXPECT_EQ(left, c.left);
    EXPECT_EQ(file, c.file);
  }
}

TEST(LongOptions, SaysWhatIsWrong) {
  const std::pair<Arguments, const char*> cases[] = {
      {{"--chek", "a"}, "Unknown option \"--chek\" (did you mean \"--check\"?)"},
      {{"--info", "-json", "a"}, "Unknown option \"-json\" (did you mean \"--json\"?)"},
      {{"--waring", "5"}, "Unknown option \"--waring\" (did you mean \"--warning\"?)"},
      {{"--transmogrify"}, "Unknown option \"--transmogrify\" (see \"--help\")"},
      {{"--ports", "a", "b"}, "Unexpected \"a\" after \"--ports\""},
      {{"--info", "--check", "a"}, "\"--info\" and \"--check\" cannot be combined"},
      {{"--", "--info"}, "No option says what to do (see \"--help\")"},
      {{"--set"}, "Missing NAME=VALUE after \"--set\""},
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

TEST(ScoreOptions, SettingsFromText) {
  // Rows that are refused leave the settings as the row before set them.
  const struct {
    int (*read)(const std::string&, OptimiseSettings&, std::string&);
    const char* text;
    int result;
    int32_t gap_m;
    bool fai_rule;
  } cases[] = {
      {ReadGap, "1000000", 0, 1000000, false},
      {ReadGap, "1000001", -1, 1000000, false},
      {ReadGap, "0", 0, 0, false},
      {ReadGap, "-1", -1, 0, false},
      {ReadGap, "1.5", -1, 0, false},
      {ReadGap, "", -1, 0, false},
      {ReadFaiRule, "on", 0, 0, true},
      {ReadFaiRule, "ON", -1, 0, true},
      {ReadFaiRule, "off", 0, 0, false},
  };
  OptimiseSettings settings = {.gap_m = 77};
  for (const auto& c : cases) {
    std::string message;
    EXPECT_EQ(c.read(c.text, settings, message), c.result) << c.text;
    EXPECT_EQ(message.empty(), c.result == 0) << c.text;
    EXPECT_EQ(settings.gap_m, c.gap_m) << c.text;
    EXPECT_EQ(settings.fai_rule, c.fai_rule) << c.text;
  }
}

}  // namespace
}  // namespace skyhaul
