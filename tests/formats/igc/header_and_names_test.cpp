#include <gtest/gtest.h>

#include "core/time_scale.h"
#include "formats/igc/header.h"
#include "formats/igc/names.h"

namespace skyhaul::igc {
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

TEST(LongName, IsBuiltOfItsParts) {
  EXPECT_EQ(LongName(FirstFix(), "xsh", "000", 1), "2026-05-04-xsh-000-01.igc");
  EXPECT_EQ(LongName(FirstFix(), "xxx", "", 2), "2026-05-04-xxx-000-02.igc");
  EXPECT_EQ(LongName(0, "abc", "7Q9", kMaxFlightNumber), "1989-12-31-abc-7Q9-35.igc");
}

TEST(IgcReadHeader, ReadsLongAndShortKeys) {
  const Header header = ReadHeader(
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
  EXPECT_EQ(ReadHeader("AXSH000  6030 SN1 \r\n").remark, "6030 SN1");
  EXPECT_EQ(ReadHeader("AXSH000\r\n").remark, "");
  EXPECT_EQ(header.pilot, "Ada Lovelace");
  EXPECT_EQ(header.glider_type, "Wing: 7");
  EXPECT_EQ(header.glider_id, "D-1234");
  EXPECT_EQ(header.site, "Hill");
  EXPECT_EQ(header.competition_class, "FAI-3 (PG)");
  EXPECT_EQ(header.competition_id, "");
}

TEST(IgcReadHeader, MakesTextsPrintable) {
  EXPECT_EQ(ReadHeader("HFPLTPILOT:J\xf6rg\x1b[2J").pilot, "Jörg?[2J");
}

}  // namespace
}  // namespace skyhaul::igc
