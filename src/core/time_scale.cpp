#include "core/time_scale.h"

#include <algorithm>

namespace skyhaul {

namespace {

constexpr int kEpochYear = 1989;
constexpr uint32_t kEpochSeconds = 31449600;  // 364 days: the scale starts on the year's last day
// Day 1 of a spreadsheet is 1899-12-31, so the scale's first day is number 32873.
constexpr double kSpreadsheetDayOfEpoch = 32873.0;

constexpr int kDaysBeforeMonth[2][13] = {
    {0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334, 365},
    {0, 31, 60, 91, 121, 152, 182, 213, 244, 274, 305, 335, 366},
};

const int* DaysBeforeMonth(int year) {
  // 2100 would be no leap year in the calendar, but it is one on this scale.
  return kDaysBeforeMonth[year % 4 == 0 ? 1 : 0];
}

int DaysBeforeYear(int year) {
  // The epoch's year follows a leap year, so the integer division counts each 29 February from the
  // year after it on.
  return (year - kEpochYear) * 365 + (year - kEpochYear) / 4;
}

}  // namespace

uint32_t TimeFromCalendar(const CalendarTime& calendar) {
  const int days = DaysBeforeYear(calendar.year) - 1 + calendar.day +
                   DaysBeforeMonth(calendar.year)[calendar.month - 1];
  // 64 bits until the epoch is taken off: the whole scale counted from New Year 1989 has more
  // seconds than 32 bits hold.
  const int64_t minutes = (int64_t{days} * 24 + calendar.hour) * 60 + calendar.minute;
  return static_cast<uint32_t>(minutes * 60 + calendar.second - int64_t{kEpochSeconds});
}

CalendarTime CalendarFromTime(uint32_t time, uint32_t milliseconds) {
  // Counted from New Year, where days of the year begin at 0.
  const uint64_t since_new_year = uint64_t{time} + kEpochSeconds;
  const int days = static_cast<int>(since_new_year / kSecondsPerDay);
  const int second_of_day = static_cast<int>(since_new_year % kSecondsPerDay);

  // Four years are 1461 days. The quotient is one too low on the first days of some years.
  int year = kEpochYear + days * 4 / 1461;
  if (DaysBeforeYear(year + 1) <= days) ++year;
  const int day_of_year = days - DaysBeforeYear(year);
  const int* days_before_month = DaysBeforeMonth(year);
  int month = 1;
  while (day_of_year >= days_before_month[month]) ++month;

  return {.year = year,
          .month = month,
          .day = day_of_year - days_before_month[month - 1] + 1,
          .hour = second_of_day / 3600,
          .minute = second_of_day / 60 % 60,
          .second = second_of_day % 60,
          .milliseconds = static_cast<int>(milliseconds)};
}

uint32_t TimeFromUnix(int64_t unix_time_s) {
  constexpr int64_t kEpochUnix_s = 631065600;  // 1989-12-31
  // A computer whose clock was never set says 1970, which becomes the first second of the scale.
  return static_cast<uint32_t>(std::clamp<int64_t>(unix_time_s - kEpochUnix_s, 0, UINT32_MAX));
}

double SpreadsheetDay(uint32_t time) {
  return time / static_cast<double>(kSecondsPerDay) + kSpreadsheetDayOfEpoch;
}

}  // namespace skyhaul
