#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "formats/text/charset.h"
#include "formats/values/numbers.h"
#include "formats/values/pieces.h"
#include "formats/values/windows_1252.h"
#include "formats/values/xml_text.h"

namespace skyhaul {
namespace {

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
