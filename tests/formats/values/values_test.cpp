#include <gtest/gtest.h>

#include "formats/text/charset.h"
#include "formats/values/iso_time.h"
#include "formats/values/numbers.h"
#include "formats/values/pieces.h"
#include "formats/values/windows_1252.h"
#include "formats/values/xml_text.h"
#include "tests/formats/values/sample_waypoints.h"

namespace skyhaul {
namespace {

TEST(ReadIsoTime, TakesWhatFilesHold) {
  const std::pair<const char*, uint32_t> cases[] = {
      {"2024-05-01T12:34:56Z", kMay2024},
      {"  2024-05-01T12:34:56z ", kMay2024},
      {"2024-05-01T12:34:56", kMay2024},
      {"2024-05-01T12:34:56.987654Z", kMay2024},
      {"2024-05-01T14:34:56+02:00", kMay2024},
      {"2024-05-01T07:04:56.5-0530", kMay2024},
      {"2024-05-02T00:34:56+12:00", kMay2024},
      {"2016-12-31T23:59:60Z", 852163199},  // a leap second
      {"2024-02-29T00:00:00Z", kMay2024 - 62 * 86400 - 45296},
      {"1989-12-31T00:00:01Z", 1},
      {"1989-12-31T00:30:00+01:00", 0},
  };
  for (const auto& [text, time] : cases) EXPECT_EQ(ReadIsoTime(text), time) << text;
}

TEST(ReadIsoTime, RefusesWhatIsNoTime) {
  const char* const cases[] = {"",
                               "2024",
                               "2024-05-01",
                               "2024-05-01 12:34:56",
                               "2024-13-01T12:34:56Z",
                               "2024-00-01T12:34:56Z",
                               "2023-02-29T12:34:56Z",
                               "2024-04-31T12:34:56Z",
                               "2024-05-00T12:34:56Z",
                               "2024-05-01T24:34:56Z",
                               "2024-05-01T12:60:56Z",
                               "2024-05-01T12:34:61Z",
                               "2024-05-01T12:34:56X",
                               "2024-05-01T12:34:56+2",
                               "2024-05-01T12:34:56+15:00",
                               "1989-12-30T23:59:59Z",
                               "1970-01-01T00:00:00Z",
                               "2126-01-01T00:00:00Z",
                               "9999-12-31T23:59:59Z",
                               "+024-05-01T12:34:56Z",
                               "20x4-05-01T12:34:56Z"};
  for (const char* text : cases) EXPECT_EQ(ReadIsoTime(text), 0U) << text;
}

TEST(AppendIsoTime, WritesMillisecondsOnlyWhereThereAreSome) {
  std::string text;
  AppendIsoTime(text, kMay2024, 0);
  text += ' ';
  AppendIsoTime(text, 1, 7);
  EXPECT_EQ(text, "2024-05-01T12:34:56Z 1989-12-31T00:00:01.007Z");
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
  EXPECT_EQ(ToWindows1252("Łódź"),
            "L\xF3"
            "dz");
  EXPECT_EQ(ToWindows1252("山"), "?");
  // Broken UTF-8 must not be read past its end.
  ToWindows1252("\xE2\x82");
  ToWindows1252("\xF0");
}

TEST(AppendXmlText, EscapesAndKeepsWhatXmlAllows) {
  const std::pair<std::string_view, std::string_view> cases[] = {
      {"a<b>&\"c\"'", "a&lt;b&gt;&amp;&quot;c&quot;'"},
      {"Größe\t\n", "Größe\t\n"},
      {std::string_view("a\0b\x1b\x01", 5), "a b  "},
      {"a\xEF\xBF\xBF\xEF\xBF\xBE\xEF\xBF\xBD", "a??\xEF\xBF\xBD"},
      {"Gruy\xE8res", "Gruyères"},
  };
  for (const auto& [text, expected] : cases) {
    std::string xml;
    AppendXmlText(xml, text);
    EXPECT_EQ(xml, expected);
  }
}

TEST(Pieces, FieldsEndAtSeparatorsAndNumbersAreWhole) {
  std::string_view rest = "a,,c";
  EXPECT_EQ(TakeField(rest, ','), "a");
  EXPECT_EQ(TakeField(rest, ','), "");
  EXPECT_EQ(TakeField(rest, ','), "c");
  EXPECT_EQ(TakeField(rest, ','), "");
  for (const char* text : {"", "-1", "+1", "1.0", " 1", "1234567890"}) {
    EXPECT_EQ(ReadWholeNumber(text), -1) << text;
  }
  EXPECT_EQ(ReadWholeNumber("999999999"), 999999999);
  for (const char* datum : {"WGS 84", "WGS84", "wgs-84", "WGS 1984"}) {
    EXPECT_TRUE(IsWgs84(datum)) << datum;
  }
  for (const char* datum : {"", "WGS 72", "European 1979", "WGS 84 x"}) {
    EXPECT_FALSE(IsWgs84(datum)) << datum;
  }
}

}  // namespace
}  // namespace skyhaul
