#include "app/command_line/help_text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "app/command_line/keywords.h"
#include "app/command_line/long_options.h"
#include "protocols/families.h"

namespace skyhaul {
namespace {

using testing::HasSubstr;

TEST(HelpText, ExplainsEveryRowOfTheTablesInLinesThatFitATerminal) {
  std::istringstream text(HelpText());
  // Words apart by one blank, so that an explanation is found across its lines.
  std::string help;
  for (std::string line; std::getline(text, line);) {
    EXPECT_LT(line.size(), 80U) << line;
    std::istringstream words(line);
    for (std::string word; words >> word;) help += word + ' ';
  }
  for (const Keyword& keyword : Keywords()) {
    const std::string value = keyword.value_name.empty() ? "" : "=";
    EXPECT_THAT(help, HasSubstr(" /" + std::string(keyword.name) + value +
                                std::string(keyword.value_name) + " " + std::string(keyword.help)));
  }
  for (const LongOption& option : kLongOptions) {
    const std::string blank = option.argument_help.empty() ? "" : " ";
    EXPECT_THAT(
        help, HasSubstr(" " + std::string(option.name) + blank + std::string(option.argument_help) +
                        " " + std::string(option.help)));
  }
  for (const GpsTypeEntry& type : GpsTypes()) {
    EXPECT_THAT(help, testing::ContainsRegex(" " + std::string(type.name) + ",? ")) << type.name;
  }
}

}  // namespace
}  // namespace skyhaul
