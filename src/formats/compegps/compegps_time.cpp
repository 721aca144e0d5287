#include "formats/compegps/compegps_time.h"

#include <iterator>

#include "core/text/date_time.h"
#include "core/text/digits.h"
#include "core/text/letter_case.h"
#include "core/text/scan.h"
#include "core/time_scale.h"

namespace skyhaul::compegps {

namespace {

constexpr std::string_view kMonths[] = {"JAN", "FEB", "MAR", "APR", "MAY", "JUN",
                                        "JUL", "AUG", "SEP", "OCT", "NOV", "DEC"};
constexpr int kFirstTwoDigitYear = 1990;  // nothing in the time scale is older
constexpr int kFirstFullYear = 2062;      // the year of kNoDate
constexpr int kCentury = 100;

// 1..12, or 0.
int MonthNumber(std::string_view name) {
  for (size_t i = 0; i < std::size(kMonths); ++i) {
    if (EqualIgnoringCase(name, kMonths[i])) return static_cast<int>(i) + 1;
  }
  return 0;
}

int FullYear(std::string_view text) {
  // "24" is 2024, "95" is 1995, and "2062" stands as it is.
  const int year = ReadWholeNumber(text);
  if (text.size() != 2 || year < 0) return year;
  return year + (year >= kFirstTwoDigitYear % kCentury ? 1900 : 2000);
}

}  // namespace

bool ReadTime(std::string_view date_text, std::string_view time_text, uint32_t& time) {
  time = 0;
  // "27-MAR-62 00:00:00" is no time, so this comes before the parse that would make 2062 of it.
  if (EqualIgnoringCase(date_text, kNoDate) && time_text == kNoTime) return true;
  CalendarTime calendar;
  // "01-MAY-24" and "12:34:56" or "12:34:56.000"; English months in any case of letters.
  calendar.day = ReadWholeNumber(TakeField(date_text, '-'));
  calendar.month = MonthNumber(TakeField(date_text, '-'));
  calendar.year = FullYear(date_text);
  calendar.hour = ReadWholeNumber(TakeField(time_text, ':'));
  calendar.minute = ReadWholeNumber(TakeField(time_text, ':'));
  calendar.second = ReadWholeNumber(TakeField(time_text, '.'));
  // What is not a number is a fault of the line; a day that does not exist is only a time not
  // known.
  if (calendar.day < 0 || calendar.month == 0 || calendar.year < 0) return false;
  if (calendar.hour < 0 || calendar.minute < 0 || calendar.second < 0) return false;
  time = TimeFromFile(calendar);
  return true;
}

void AppendTime(std::string& text, uint32_t time) {
  if (time == 0) {
    text.append(kNoDate).append(" ").append(kNoTime);
    return;
  }
  const CalendarTime calendar = CalendarFromTime(time);
  // 01-MAY-24 12:34:56
  AppendPadded(text, static_cast<uint64_t>(calendar.day), 2);
  text.append("-").append(kMonths[calendar.month - 1]).append("-");
  const bool is_short = calendar.year >= kFirstTwoDigitYear && calendar.year < kFirstFullYear;
  const int year = is_short ? calendar.year % kCentury : calendar.year;
  AppendPadded(text, static_cast<uint64_t>(year), 2);
  text += ' ' + TimeText(calendar);
}

}  // namespace skyhaul::compegps
