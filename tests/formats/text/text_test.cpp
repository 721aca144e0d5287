#include <gtest/gtest.h>

#include "formats/text/charset.h"
#include "formats/text/scan.h"

namespace skyhaul {
namespace {

TEST(ToUtf8, TakesWhatIsNotUtf8ForWindows1252) {
  const std::pair<std::string_view, std::string_view> cases[] = {
      {"", ""},
      {"plain", "plain"},
      {"Z\xC3\xBCrich", "Zürich"},
      {"\xEF\xBB\xBFZ\xC3\xBCrich", "Zürich"},
      {"\xEF\xBB\xBF", ""},
      {"Z\xFCrich", "Zürich"},
      {"\x80 \x9F \xFF \x8A", "€ Ÿ ÿ Š"},
      {"\x81\x8D\x8F\x90\x9D", "?????"},
      {"\xF0\x9F\x9B\xA9", "🛩"},
      // Not UTF-8 although each byte looks like it: cut off, overlong, a surrogate, beyond the end.
      {"a\xC3", "aÃ"},
      {"\xC0\xAF", "À¯"},
      {"\xE0\x80\xAF", "à€¯"},
      {"\xED\xA0\x80", "í\u00A0€"},
      {"\xF4\x91\x80\x80", "ô‘€€"},
      // One bad byte settles it for the whole text.
      {"\xC3\xBC\xFC", "Ã¼ü"},
  };
  for (const auto& [bytes, text] : cases) EXPECT_EQ(ToUtf8(bytes), text) << text;
  EXPECT_EQ(ToUtf8(std::string_view("a\0\xFC", 3)), std::string("a\0ü", 4));
}

TEST(ToAscii, DropsNothing) {
  const std::pair<std::string_view, std::string_view> cases[] = {
      {"Zürich Genève Château-d'Œx", "Zurich Geneve Chateau-d'OEx"},
      {"Großglockner Ærø Ðþ", "Grossglockner AEro Dth"},
      {"Łódź Žďár Iğdır Győr Țăndărei Ňŷ", "Lodz Zdar Igdir Gyor Tandarei Ny"},
      {"ŉŊŋ Ŀŀ ſ ÷×", "'nNn Ll s /x"},
      {"ẠắỆỵ Ơư", "AaEy Ou"},
      {"“A” – ‘b’…", "\"A\" - 'b'..."},
      {"a\u00A0b €", "a b EUR"},
      {"Ж中🛩", "???"},
      // Accents in characters of their own belong to their letters, and to nothing else.
      {"Zu\u0308rich e\u0301\u0327", "Zurich e"},
      {"\u0301 1\u0301 Ж\u0301", "? 1? ??"},
      {"bad \xFF\xC3", "bad ??"},
  };
  for (const auto& [text, plain] : cases) EXPECT_EQ(ToAscii(text), plain) << text;
}

TEST(FirstCharacters, CutsBetweenCharacters) {
  EXPECT_EQ(FirstCharacters("Zürich", 0), "");
  EXPECT_EQ(FirstCharacters("Zürich", 2), "Zü");
  EXPECT_EQ(FirstCharacters("🛩Ж中a", 3), "🛩Ж中");
  EXPECT_EQ(FirstCharacters("Zürich", 6), "Zürich");
  EXPECT_EQ(FirstCharacters("Zürich", 7), "Zürich");
  EXPECT_EQ(FirstCharacters("\xFF\xFF\xFF", 2), "\xFF\xFF");
}

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
