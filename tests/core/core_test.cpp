#include <gtest/gtest.h>

#include <chrono>
#include <cmath>

#include "core/airspace_text.h"
#include "core/count_message.h"
#include "core/time_scale.h"
#include "core/units.h"

namespace skyhaul {
namespace {

TEST(CountMessage, FillsTemplatesInOrderAndRepeatsTheFourthNumber) {
  const std::pair<const char*, const char*> cases[] = {
      {"no number", "no number"},
      {"Track position % (%m %s)", "Track position 10 (0m 4294967295s)"},
      {"%-%-%-%-%-%", "10-0-4294967295-7-7-7"},
  };
  for (const auto& [text, expected] : cases) {
    EXPECT_EQ(FormatCountMessage(text, 10, 0, 4294967295U, 7), expected) << text;
  }
}

// The last second of the scale, on which 2100 is a leap year.
TEST(ClassAndLimits, FitAPilotsScreen) {
  using enum LimitReference;
  const AirspaceLimit none;
  const AirspaceLimit ground = {kSurface};
  const AirspaceLimit level = {kFlightLevel, LimitUnit::kFeet, 65};
  const AirspaceLimit above = {kGround, LimitUnit::kFeet, 2500};
  const AirspaceLimit metres = {kGround, LimitUnit::kMetres, 300};
  const AirspaceLimit sea = {kSea, LimitUnit::kFeet, 13500};
  const std::tuple<const char*, AirspaceLimit, AirspaceLimit, const char*> cases[] = {
      {"C", ground, level, "C GND-FL65"},
      {"D", above, level, "D 2500ftAGL-FL65"},
      {"CTR", above, sea, "CTR 2500G-13500"},
      {"R", above, sea, "R 2500ftG-13500ft"},
      {"Q", metres, {kUnlimited}, "Q 300mAGL-UNL"},
      {"RESTRICTED", ground, {kSea, LimitUnit::kMetres, 900}, "RESTRICT GND-900m"},
      {"W", {kNotGiven, LimitUnit::kFeet, 0, "Ask on 122.8"}, level, "W ?-FL65"},
      {"", ground, level, "GND-FL65"},
      {"UNCLASSIFIED CLASS", none, none, "UNCLASSIFIED CLAS"},
      {"D", {kSea, LimitUnit::kMetres, 1e9}, {kSea, LimitUnit::kMetres, 1e9}, "D"},
      {"", none, none, ""},
  };
  for (const auto& [name, floor, ceiling, text] : cases) {
    EXPECT_EQ(ClassAndLimits({.airspace_class = name, .floor = floor, .ceiling = ceiling}, 17),
              text);
  }
}

TEST(TimeScale, EndsIn2126) {
  const CalendarTime last = {
      .year = 2126, .month = 2, .day = 5, .hour = 6, .minute = 28, .second = 15};
  EXPECT_EQ(TimeFromCalendar(last), UINT32_MAX);
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
  EXPECT_EQ(SpreadsheetDay(86400 + 43200), 32874.5);
  EXPECT_GT(SpreadsheetDay(4294967295U), 82000.0) << "seconds count without a sign";
  EXPECT_EQ(TimeFromUnix(1795264496), 1164198896U);
  EXPECT_EQ(TimeFromUnix(-5), 0U);
  EXPECT_EQ(TimeFromUnix(INT64_MAX / 2), UINT32_MAX);
}

TEST(Units, RoundsHalfAwayFromZero) {
  const std::pair<double, int32_t> cases[] = {{0.49, 0}, {-0.49, 0}, {-0.5, -1}, {2.5, 3}};
  for (const auto& [value, rounded] : cases) EXPECT_EQ(RoundHalfAwayFromZero(value), rounded);
}

TEST(Units, DecimetresToMetresRoundsLikeEveryWriter) {
  const std::pair<int32_t, int32_t> cases[] = {{4, 0}, {5, 1}, {-14, 0}, {-15, -1}, {12345, 1235}};
  for (const auto& [dm, m] : cases) EXPECT_EQ(DecimetresToMetres(dm), m) << dm;
}

TEST(Units, EveryThousandthOfAMinuteComesBack) {
  for (int32_t milliminutes = -10'800'000; milliminutes <= 10'800'000; milliminutes += 7) {
    const int32_t semicircles = MilliminutesToSemicircles(milliminutes);
    ASSERT_EQ(SemicirclesToMilliminutes(semicircles), milliminutes);
    ASSERT_NEAR(semicircles, milliminutes * (2147483648.0 / 10'800'000), 0.51);
  }
}

TEST(Units, RadiansComeBackAndAreClamped) {
  for (const int32_t semicircles : {1, -1073741824, 2147483647, -2147483647}) {
    EXPECT_EQ(RadiansToSemicircles(SemicirclesToRadians(semicircles)), semicircles);
  }
  EXPECT_EQ(RadiansToSemicircles(kPi), 2147483647);
  EXPECT_EQ(RadiansToSemicircles(-4), INT32_MIN);
  EXPECT_NEAR(SemicirclesToDegrees(1073741824), 90, 1e-9);
}

}  // namespace
}  // namespace skyhaul
