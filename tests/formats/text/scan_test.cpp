#include "formats/text/scan.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace skyhaul {
namespace {

TEST(TakeLine, EndsAtEveryKindOfLineEnd) {
  std::string_view rest = "a\r\nb\n\nc\rd\n\re";
  std::vector<std::string_view> lines;
  while (!rest.empty()) lines.push_back(TakeLine(rest));
  EXPECT_EQ(lines, (std::vector<std::string_view>{"a", "b", "", "c", "d", "", "e"}));
}

TEST(TakeWord, SkipsBlanksBefore) {
  std::string_view rest = " \tone two\t ";
  EXPECT_EQ(TakeWord(rest), "one");
  EXPECT_EQ(TakeWord(rest), "two");
  EXPECT_EQ(TakeWord(rest), "");
  EXPECT_EQ(rest, "");
}

TEST(ParseDecimal, TakesNothingButDecimals) {
  const std::pair<std::string_view, double> good[] = {
      {"12", 12}, {"-3.5", -3.5}, {"+.25", .25}, {"007.", 7}, {"-0", 0}};
  for (const auto& [text, expected] : good) {
    double number = 99;
    EXPECT_EQ(ParseDecimal(text, number), 0) << text;
    EXPECT_EQ(number, expected) << text;
  }
  for (const std::string_view bad : {"", "-", "+", ".", "--1", "+-1", "1e3", "inf", "nan", "0x10",
                                     "1,5", " 1", "1 ", "1.2.3", "12m"}) {
    double number = 99;
    EXPECT_EQ(ParseDecimal(bad, number), -1) << bad;
    EXPECT_EQ(number, 99) << bad;
  }
  double number = 99;
  EXPECT_EQ(ParseDecimal(std::string(400, '9'), number), -1);
}

TEST(OneLine, HasNoControlCharacters) {
  EXPECT_EQ(OneLine("\r\n a\tb\nc\x7F "), "a b c");
  EXPECT_EQ(OneLine("\n\t"), "");
  EXPECT_EQ(OneLine("Zürich"), "Zürich");
}

}  // namespace
}  // namespace skyhaul
