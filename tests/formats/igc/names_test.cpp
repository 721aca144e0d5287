#include "formats/igc/names.h"

#include <gtest/gtest.h>

#include "core/time_scale.h"

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
    std::string expanded;
    EXPECT_EQ(ExpandNameTemplate(path, FirstFix(), expanded), 0);
    EXPECT_EQ(expanded, expected);
  }
}

TEST(ExpandNameTemplate, LimitsTheLength) {
  std::string expanded = "before";
  EXPECT_EQ(ExpandNameTemplate(std::string(252, 'x') + "$date", FirstFix(), expanded), -1);
  EXPECT_EQ(expanded, "before");
  EXPECT_EQ(ExpandNameTemplate(std::string(251, 'x') + "$date", FirstFix(), expanded), 0);
  EXPECT_EQ(expanded.size(), kMaxPath);
}

TEST(IgcLongName, IsBuiltOfItsParts) {
  EXPECT_EQ(IgcLongName(FirstFix(), "xsh", "000", 1), "2026-05-04-xsh-000-01.igc");
  EXPECT_EQ(IgcLongName(0, "abc", "7Q9", kMaxFlightNumber), "1989-12-31-abc-7Q9-35.igc");
}

}  // namespace
}  // namespace skyhaul
