#include <gtest/gtest.h>

#include "core/time_scale.h"
#include "formats/igc/header.h"
#include "formats/igc/names.h"

namespace skyhaul::igc {
namespace {

uint32_t FirstFix() {
  return TimeFromCalendar({2026, 5, 4, 3, 2, 1});
}

TEST(ExpandNameTemplate, ReplacesEveryKey) {
  EXPECT_EQ(ExpandNameTemplate("$$date-$time/$date$dat$Time.igc", FirstFix()),
            "$20260504-030201/20260504$dat$Time.igc");
}

TEST(LongName, IsBuiltOfItsParts) {
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
  EXPECT_EQ(std::tie(header.manufacturer, header.serial, header.recorder, header.pilot,
                     header.glider_type, header.glider_id, header.site, header.competition_class,
                     header.competition_id),
            std::tuple("ABC", "12345", "Maker,Type 7", "Ada Lovelace", "Wing: 7", "D-1234", "Hill",
                       "FAI-3 (PG)", ""));
  EXPECT_EQ(ReadHeader("AXSH000  6030 SN1 \r\n").remark, "6030 SN1");
  EXPECT_EQ(ReadHeader("HFPLTPILOT:J\xf6rg\x1b[2J").pilot, "Jörg?[2J");
}

}  // namespace
}  // namespace skyhaul::igc
