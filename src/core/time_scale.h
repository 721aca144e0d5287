#pragma once

#include <cstdint>

namespace skyhaul {

// A date and time of day, UTC.
struct CalendarTime {
  int year = 1989;
  int month = 12;  // 1..12
  int day = 31;    // 1..31
  int hour = 0;
  int minute = 0;
  int second = 0;
  int milliseconds = 0;

  friend bool operator==(const CalendarTime&, const CalendarTime&) = default;
};

inline constexpr uint32_t kSecondsPerDay = 86400;

// The program's time scale counts seconds since 1989-12-31 00:00:00 UTC in 32 bits without sign
// (satellite receivers use the same one) and ends on 2126-02-06. Every fourth year is a leap year
// on it, 2100 included, so from 2100-03-01 on its dates lag the calendar's by one day.

// Seconds for a date and time from 1989-12-31 on; milliseconds are ignored. The fields must be in
// their ranges (a day 29 to 31 that the month does not have counts on into the next month).
uint32_t TimeFromCalendar(const CalendarTime& calendar);

// The inverse of TimeFromCalendar for every 32-bit value; milliseconds are carried over.
CalendarTime CalendarFromTime(uint32_t time, uint32_t milliseconds = 0);

// Seconds since 1970-01-01 00:00:00 UTC, as operating systems count them, to the program's time
// scale; times that it cannot hold give the nearest one that it can.
uint32_t TimeFromUnix(int64_t unix_time_s);

// The time as a spreadsheet's day number: days, with fraction, since 1899-12-30.
double SpreadsheetDay(uint32_t time);

}  // namespace skyhaul
