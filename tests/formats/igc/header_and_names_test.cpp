#include <gtest/gtest.h>

#include "core/time_scale.h"
#include "formats/igc/header.h"
#include "formats/igc/names.h"

namespace skyhaul {
namespace {

uint32_t FirstFix() {
  return TimeFromCalendar(
      {.year = 2026, .month = 5, .day = 4, .hour = 3, .minute = 2, .second = 1});
}

TEST(ExpandNameTemplate, ReplacesEveryKey) {
  const std::pair<const char*, const char*> cases[] = {
      {"", ""},
      {"flight.igc", "flight.igc"},
      {"$date", "20260504"},
      {"a/$date-$time/$date.igc", "a/20260504-030201/20260504.igc"},
      {"$$date$dat$Time", "$20260504$dat$Time"},
  };
  for (const auto& [path, expected] : cases) {
    EXPECT_EQ(ExpandNameTemplate(path, FirstFix()), expected);
  }
}

TEST(IgcLongName, IsBuiltOfItsParts) {
  EXPECT_EQ(IgcLongName(FirstFix(), "xsh", "000", 1), "2026-05-04-xsh-000-01.igc");
  EXPECT_EQ(IgcLongName(0, "abc", "7Q9", kMaxFlightNumber), "1989-12-31-abc-7Q9-35.igc");
}

TEST(ReadIgcHeader, ReadsLongAndShortKeys) {
  const IgcHeader header = ReadIgcHeader(
      "AABC12345 and more\r\n"
      "HFFTYFRTYPE:Maker,Type 7\r\n"
      "HFPLTPILOTINCHARGE:\t Ada Lovelace \r\n"
      "HOPLTPilot:Somebody else\r\n"
      "HPGTYGLIDERTYPE: \n"
      "HPGTYGLIDERTYPE:Wing: 7\n"
      "HFGIDD-1234\n"
      "HFSITSite:  Hill\r ignored\n"
      "HSCCLCOMPETITION CLASS:FAI-3 (PG)\n"
      "HFCIDCOMPETITIONID:\n"
      "HFTZNTIMEZONE:3\n"
      "HF\n"
      "AXYZ999");
  EXPECT_EQ(header.manufacturer, "ABC");
  EXPECT_EQ(header.serial, "12345");
  EXPECT_EQ(header.recorder, "Maker,Type 7");
  EXPECT_EQ(ReadIgcHeader("AXSH000  6030 SN1 \r\n").remark, "6030 SN1");
  EXPECT_EQ(ReadIgcHeader("AXSH000\r\n").remark, "");
  EXPECT_EQ(header.pilot, "Ada Lovelace");
  EXPECT_EQ(header.glider_type, "Wing: 7");
  EXPECT_EQ(header.glider_id, "D-1234");
  EXPECT_EQ(header.site, "Hill");
  EXPECT_EQ(header.competition_class, "FAI-3 (PG)");
  EXPECT_EQ(header.competition_id, "");
}

TEST(ReadIgcHeader, MakesTextsPrintable) {
  const std::pair<std::string, const char*> cases[] = {
      {"S\xc4\x81rnate", "S\xc4\x81rnate"},             // UTF-8 stays
      {"\xf0\x9f\xaa\x82", "\xf0\x9f\xaa\x82"},         // with four bytes, too
      {"J\xf6rg", "J\xc3\xb6rg"},                       // ISO 8859-1
      {"\xc4\x81\xf6", "\xc3\x84?\xc3\xb6"},            // not UTF-8 throughout
      {"\xc0\xaf", "\xc3\x80\xc2\xaf"},                 // overlong
      {"\xed\xa0\x80", "\xc3\xad\xc2\xa0?"},            // surrogate
      {"\xf4\x90\x80\x80", "\xc3\xb4???"},              // past the last character
      {"\xe2\x82", "\xc3\xa2?"},                        // cut off
      {std::string("a\x1b[2J\x7f\0z", 8), "a?[2J??z"},  // controls
      {"\xc2\x9b"
       "31m",
       "?31m"},  // a control in UTF-8
  };
  for (const auto& [bytes, text] : cases) {
    EXPECT_EQ(ReadIgcHeader("HFPLTPILOT:" + bytes).pilot, text) << text;
  }
}

}  // namespace
}  // namespace skyhaul
