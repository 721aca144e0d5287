#include "app/command_line/help_text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "app/command_line/keywords.h"
#include "app/command_line/long_options.h"

namespace skyhaul {
namespace {

using testing::HasSubstr;

// The lines of the help without what separates words, so that a wrapped explanation is found.
std::string OneLine(const std::string& text) {
  std::istringstream words(text);
  std::string line;
  for (std::string word; words >> word;) line += word + ' ';
  return line;
}

TEST(HelpText, ExplainsEveryRowOfTheTables) {
  const std::string help = OneLine(HelpText());
  for (const Keyword& keyword : Keywords()) {
    std::string entry = "/" + std::string(keyword.name);
    if (!keyword.value_name.empty()) entry += "=" + std::string(keyword.value_name);
    EXPECT_THAT(help, HasSubstr(" " + entry + " " + std::string(keyword.help) + " "));
  }
  for (const LongOption& option : kLongOptions) {
    EXPECT_FALSE(option.help.empty()) << option.name;
    std::string entry = " " + std::string(option.name) + " ";
    if (!option.argument_help.empty()) entry += std::string(option.argument_help) + " ";
    EXPECT_THAT(help, HasSubstr(entry + std::string(option.help) + " "));
  }
  for (const std::string_view name : kGpsTypeNames) {
    EXPECT_THAT(help, HasSubstr(" " + std::string(name) + " "));
  }
}

TEST(HelpText, LinesFitATerminal) {
  std::istringstream text(HelpText());
  for (std::string line; std::getline(text, line);) {
    EXPECT_LT(line.size(), 80U) << line;
    EXPECT_FALSE(line.ends_with(' ')) << line;
  }
}

}  // namespace
}  // namespace skyhaul
