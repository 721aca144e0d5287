#include <gtest/gtest.h>

#include <tuple>
#include <vector>

#include "core/text/angles.h"
#include "core/text/charset.h"
#include "core/text/date_time.h"
#include "core/text/digits.h"
#include "core/text/numbers.h"
#include "core/text/printable.h"
#include "core/text/scan.h"
#include "core/text/utf8.h"

namespace skyhaul {
namespace {

constexpr uint32_t kMay2024 = 1083501296;  // 2024-05-01 12:34:56 UTC

TEST(ToUtf8, TakesWhatIsNotUtf8ForWindows1252) {
  const std::pair<std::string_view, std::string_view> cases[] = {
      {"\xEF\xBB\xBFZ\xC3\xBCrich \xF0\x9F\x9B\xA9", "Zürich 🛩"},
      {"\x80 \x9F \xFF \x8A", "€ Ÿ ÿ Š"},
      {"\x81\x8D\x8F\x90\x9D", "?????"},
      // Not UTF-8 although each byte looks like it: cut off, overlong, a surrogate, beyond the end.
      {"a\xC3", "aÃ"},
      {"\xC0\xAF", "À¯"},
      {"\xE0\x80\xAF", "à€¯"},
      {"\xED\xA0\x80", "í\u00A0€"},
      {"\xF4\x90\x80\x80", "ô?€€"},
      // One bad byte settles it for the whole text.
      {"\xC3\xBC\xFC", "Ã¼ü"},
  };
  for (const auto& [bytes, text] : cases) EXPECT_EQ(ToUtf8(bytes), text) << text;
  EXPECT_EQ(ToUtf8({"a\0\xFC", 3}), std::string("a\0ü", 4));
}

TEST(ToAscii, DropsNothing) {
  const std::pair<std::string_view, std::string_view> cases[] = {
      {"Zürich Genève Château-d'Œx", "Zurich Geneve Chateau-d'OEx"},
      {"Großglockner Ærø Ðþ", "Grossglockner AEro Dth"},
      {"Łódź Žďár Iğdır Győr Țăndărei Ňŷ", "Lodz Zdar Igdir Gyor Tandarei Ny"},
      {"ẠắỆỵ Ơư", "AaEy Ou"},
      {"“A” –\u00A0‘b’… €", "\"A\" - 'b'... EUR"},
      {"Ж中🛩", "???"},
      // Accents in characters of their own belong to their letters, and to nothing else.
      {"Zu\u0308rich e\u0301\u0327", "Zurich e"},
      {"\u0301 1\u0301 Ж\u0301", "? 1? ??"},
      {"bad \xFF\xC3", "bad ??"},
  };
  for (const auto& [text, plain] : cases) EXPECT_EQ(ToAscii(text), plain) << text;
}

TEST(ToWindows1252, ComesBackByteForByte) {
  std::string bytes = "a";
  for (int byte = 0x80; byte < 0x100; ++byte) {
    const bool is_unused =
        byte == 0x81 || byte == 0x8D || byte == 0x8F || byte == 0x90 || byte == 0x9D;
    if (!is_unused) bytes += static_cast<char>(static_cast<unsigned char>(byte));
  }
  EXPECT_EQ(ToWindows1252(ToUtf8(bytes)), bytes);
}

TEST(ToWindows1252, GivesPlainLettersForWhatItLacks) {
  EXPECT_EQ(ToWindows1252("Łó山"), "L\xF3?");
  // Broken UTF-8 must not be read past its end.
  ToWindows1252("\xE2\x82");
  ToWindows1252("\xF0");
}

TEST(FirstCharacters, CutsBetweenCharacters) {
  EXPECT_EQ(FirstCharacters("🛩Ж中a", 3), "🛩Ж中");
  EXPECT_EQ(FirstCharacters("\xFF\xFF\xFF", 2), "\xFF\xFF");
  EXPECT_EQ(CountCharacters("🛩Ж中a\xFF"), 5U);
}

TEST(TakeLine, EndsAtEveryKindOfLineEnd) {
  std::string_view rest = "a\r\nb\n\nc\rd\n\re";
  std::vector<std::string_view> lines;
  while (!rest.empty()) lines.push_back(TakeLine(rest));
  EXPECT_EQ(lines, (std::vector<std::string_view>{"a", "b", "", "c", "d", "", "e"}));
}

TEST(ReadDecimal, TakesNothingButDecimals) {
  const std::pair<std::string_view, double> good[] = {
      {"12", 12}, {"-3.5", -3.5}, {"+.25", .25}, {"007.", 7}, {"-0", 0}};
  for (const auto& [text, expected] : good) EXPECT_EQ(ReadDecimal(text), expected) << text;
  for (const std::string_view bad : {"", "-", "+", ".", "--1", "+-1", "1e3", "inf", "nan", "0x10",
                                     "1,5", " 1", "1 ", "1.2.3", "12m"}) {
    EXPECT_EQ(ReadDecimal(bad), std::nullopt) << bad;
  }
  EXPECT_EQ(ReadDecimal(std::string(400, '9')), std::nullopt);
}

TEST(ReadInteger, HoldsToTheType) {
  EXPECT_EQ(ReadInteger<int32_t>("-2147483648"), INT32_MIN);
  for (const char* bad : {"", "-", "+1", " 1", "1 ", "1.0", "2147483648"}) {
    EXPECT_EQ(ReadInteger<int32_t>(bad), std::nullopt) << bad;
  }
}

TEST(Digits, AreReadWholeAndWrittenToAWidth) {
  for (const char* text : {"", "-1", "+1", "1.0", " 1", "1234567890"}) {
    EXPECT_EQ(ReadWholeNumber(text), -1) << text;
  }
  EXPECT_EQ(ReadWholeNumber("999999999"), 999999999);
  EXPECT_EQ(PaddedNumber(7, 3) + PaddedNumber(1234, 3) + PaddedNumber(UINT64_MAX, 1),
            "007123418446744073709551615");
}

TEST(FixedText, RoundsToTheDecimals) {
  EXPECT_EQ(FixedText(46.1234565, 6) + FixedText(-0.25, 1) + FixedText(2.5, 0), "46.123457-0.22");
  EXPECT_EQ(FixedText(1e22, 1), "10000000000000000000000.0");
}

TEST(ReadDegreesMinutes, TakesTheLastTwoDigitsForMinutes) {
  const std::tuple<const char*, uint32_t, double> good[] = {
      {"4630.5", 46, 30.5}, {"00730.", 7, 30},     {"30", 0, 30},
      {"5", 0, 5},          {"000004630", 46, 30}, {"99999.999", 999, 99.999},
  };
  for (const auto& [text, degrees, minutes] : good) {
    const auto angle = ReadDegreesMinutes(text);
    ASSERT_TRUE(angle) << text;
    EXPECT_EQ(angle->degrees, degrees) << text;
    EXPECT_DOUBLE_EQ(angle->minutes, minutes) << text;
  }
  for (const char* bad :
       {"", ".", ".5", "4630.5.1", "-4630", "46-30", "46+3", "4630 ", "100000", "4630N", "1e5"}) {
    EXPECT_FALSE(ReadDegreesMinutes(bad)) << bad;
  }
}

TEST(DateAndTime, AreWrittenWithLeadingZeros) {
  const CalendarTime calendar = {.year = 2024, .month = 6, .day = 1, .hour = 9, .minute = 5};
  EXPECT_EQ(DateText(calendar) + ' ' + TimeText(calendar), "2024-06-01 09:05:00");
  EXPECT_EQ(DateText(calendar, "") + TimeText(calendar, ""), "20240601090500");
  EXPECT_EQ(DurationText(7265) + ' ' + DurationText(360000), "02:01:05 100:00:00");
  std::string text;
  AppendIsoTime(text, kMay2024, 0);
  AppendIsoTime(text, 1, 7);
  EXPECT_EQ(text, "2024-05-01T12:34:56Z1989-12-31T00:00:01.007Z");
}

TEST(ReadIsoTime, TakesWhatFilesHold) {
  const std::pair<const char*, uint32_t> cases[] = {
      {"  2024-05-01T12:34:56z ", kMay2024},
      {"2024-05-01T12:34:56", kMay2024},
      {"2024-05-01T12:34:56.987654Z", kMay2024},
      {"2024-05-01T14:34:56+02:00", kMay2024},
      {"2024-05-01T07:04:56.5-0530", kMay2024},
      {"2016-12-31T23:59:60Z", 852163199},  // a leap second
      {"2024-02-29T00:00:00Z", kMay2024 - 62 * 86400 - 45296},
      {"1989-12-31T00:30:00+01:00", 0},
  };
  for (const auto& [text, time] : cases) EXPECT_EQ(ReadIsoTime(text), time) << text;
}

TEST(ReadIsoTime, RefusesWhatIsNoTime) {
  for (const char* text :
       {"", "2024-05-01", "2024-05-01 12:34:56", "2024-13-01T12:34:56Z", "2024-00-01T12:34:56Z",
        "2024-04-31T12:34:56Z", "2024-05-00T12:34:56Z", "2024-05-01T24:34:56Z",
        "2024-05-01T12:60:56Z", "2024-05-01T12:34:61Z", "2024-05-01T12:34:56X",
        "2024-05-01T12:34:56+2", "2024-05-01T12:34:56+15:00", "1989-12-30T23:59:59Z",
        "1970-01-01T00:00:00Z", "2126-01-01T00:00:00Z", "+024-05-01T12:34:56Z"}) {
    EXPECT_EQ(ReadIsoTime(text), 0U) << text;
  }
}

TEST(PrintableText, MasksControlsInEitherCharacterSet) {
  const std::pair<std::string, const char*> cases[] = {
      {"S\xc4\x81rnate", "S\xc4\x81rnate"},             // UTF-8 stays
      {"\xc4\x81\xf6", "\xc3\x84?\xc3\xb6"},            // not UTF-8 throughout: ISO 8859-1
      {std::string("a\x1b[2J\x7f\0z", 8), "a?[2J??z"},  // controls
      {"\xc2\x9b[m", "?[m"},                            // a control in UTF-8
  };
  for (const auto& [bytes, text] : cases) EXPECT_EQ(PrintableText(bytes), text) << text;
}

TEST(OneLine, HasNoControlCharacters) {
  EXPECT_EQ(OneLine("\r\n a\tü\nc\x7F "), "a ü c");
}

}  // namespace
}  // namespace skyhaul
