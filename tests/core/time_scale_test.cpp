#include "core/time_scale.h"

#include <gtest/gtest.h>

#include <chrono>

namespace skyhaul {
namespace {

TEST(TimeScale, KnownMoments) {
  const std::pair<CalendarTime, uint32_t> cases[] = {
      {{.year = 1989, .month = 12, .day = 31}, 0},
      {{.year = 1990, .month = 1, .day = 1}, 86400},
      {{.year = 2000, .month = 2, .day = 29, .hour = 23, .minute = 59, .second = 59}, 320803199},
      {{.year = 2000, .month = 3, .day = 1}, 320803200},
      {{.year = 2026, .month = 11, .day = 21, .hour = 12, .minute = 34, .second = 56}, 1164198896},
      // The last second of the scale, on which 2100 is a leap year.
      {{.year = 2126, .month = 2, .day = 5, .hour = 6, .minute = 28, .second = 15}, 4294967295U},
  };
  for (const auto& [calendar, time] : cases) {
    EXPECT_EQ(TimeFromCalendar(calendar), time);
    EXPECT_EQ(CalendarFromTime(time), calendar) << time;
  }
}

TEST(TimeScale, EveryDayAgreesWithTheCalendarUntil2100AndComesBack) {
  using std::chrono::sys_days;
  const sys_days epoch = std::chrono::year{1989} / 12 / 31;
  const sys_days last_common_day = std::chrono::year{2100} / 2 / 28;
  uint32_t second_of_day = 0;
  for (uint32_t day = 0; day <= UINT32_MAX / kSecondsPerDay; ++day) {
    second_of_day = (second_of_day * 7 + 12345) % kSecondsPerDay;
    const uint64_t wanted = uint64_t{day} * kSecondsPerDay + second_of_day;
    const auto time = static_cast<uint32_t>(std::min<uint64_t>(wanted, UINT32_MAX));
    const CalendarTime calendar = CalendarFromTime(time, 250);
    ASSERT_EQ(TimeFromCalendar(calendar), time);
    ASSERT_EQ(calendar.milliseconds, 250);
    const sys_days date = epoch + std::chrono::days(day);
    if (date > last_common_day) continue;
    const std::chrono::year_month_day expected = date;
    ASSERT_EQ(calendar.year, static_cast<int>(expected.year()));
    ASSERT_EQ(calendar.month, static_cast<int>(static_cast<unsigned>(expected.month())));
    ASSERT_EQ(calendar.day, static_cast<int>(static_cast<unsigned>(expected.day())));
  }
}

TEST(TimeScale, OtherScales) {
  EXPECT_EQ(SpreadsheetDay(0), 32873.0);
  EXPECT_EQ(SpreadsheetDay(86400 + 43200), 32874.5);
  EXPECT_GT(SpreadsheetDay(4294967295U), 82000.0) << "seconds count without a sign";
  EXPECT_EQ(TimeFromUnix(631065600), 0U);
  EXPECT_EQ(TimeFromUnix(1795264496), 1164198896U);
  EXPECT_EQ(TimeFromUnix(-5), 0U);
  EXPECT_EQ(TimeFromUnix(INT64_MAX / 2), UINT32_MAX);
}

}  // namespace
}  // namespace skyhaul
