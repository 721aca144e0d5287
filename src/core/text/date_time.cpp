#include "core/text/date_time.h"

#include <algorithm>

#include "core/text/digits.h"
#include "core/text/letter_case.h"
#include "core/text/scan.h"

namespace skyhaul {

namespace {

constexpr int kFirstYear = 1989;
constexpr int kLastYear = 2125;  // the last that the time scale holds to its end

// Reads "Z", "+hh:mm", "-hhmm" or nothing. Returns false for anything else.
bool ReadZone(std::string_view text, int& offset_minutes) {
  offset_minutes = 0;
  if (text.empty() || EqualIgnoringCase(text, "Z")) return true;
  if (text[0] != '+' && text[0] != '-') return false;
  std::string digits(text.substr(1));
  std::erase(digits, ':');
  const int number = ReadWholeNumber(digits);
  // No place is more than 14 hours from UTC.
  if (digits.size() != 4 || number < 0 || number % 100 > 59 || number > 1400) return false;
  offset_minutes = (number / 100 * 60 + number % 100) * (text[0] == '-' ? -1 : 1);
  return true;
}

// ".123" or ",123": ISO 8601 allows both signs.
void DropFraction(std::string_view& text) {
  if (!text.starts_with('.') && !text.starts_with(',')) return;
  text.remove_prefix(1);
  text.remove_prefix(std::min(text.find_first_not_of("0123456789"), text.size()));
}

// Three numbers of a date or a time, the first at least so wide, the others two digits.
std::string ThreeNumbers(const int (&numbers)[3], size_t first_width, std::string_view separator) {
  std::string text = PaddedNumber(static_cast<uint64_t>(numbers[0]), first_width);
  for (const int number : {numbers[1], numbers[2]}) {
    text += separator;
    AppendPadded(text, static_cast<uint64_t>(number), 2);
  }
  return text;
}

}  // namespace

std::string DateText(const CalendarTime& calendar, std::string_view separator) {
  return ThreeNumbers({calendar.year, calendar.month, calendar.day}, 4, separator);
}

std::string TimeText(const CalendarTime& calendar, std::string_view separator) {
  return ThreeNumbers({calendar.hour, calendar.minute, calendar.second}, 2, separator);
}

std::string DurationText(uint32_t seconds) {
  return TimeText({.hour = static_cast<int>(seconds / 3600),
                   .minute = static_cast<int>(seconds / 60 % 60),
                   .second = static_cast<int>(seconds % 60)});
}

void AppendIsoTime(std::string& text, uint32_t time, uint32_t milliseconds) {
  const CalendarTime calendar = CalendarFromTime(time);
  text += DateText(calendar) + 'T' + TimeText(calendar);
  if (milliseconds != 0) {
    text += '.';
    AppendPadded(text, std::min(milliseconds, 999U), 3);
  }
  text += 'Z';
}

uint32_t TimeFromFile(const CalendarTime& calendar) {
  if (calendar.year < kFirstYear || calendar.year > kLastYear) return 0;
  // The scale begins with the last day of its first year.
  if (calendar.year == kFirstYear && (calendar.month != 12 || calendar.day != 31)) return 0;
  if (calendar.month < 1 || calendar.month > 12 || calendar.day < 1 || calendar.day > 31) return 0;
  if (calendar.hour < 0 || calendar.hour > 23 || calendar.minute < 0 || calendar.minute > 59) {
    return 0;
  }
  if (calendar.second < 0 || calendar.second > 60) return 0;
  CalendarTime exact = calendar;
  // 23:59:60 is a leap second, which the scale does not have.
  exact.second = std::min(exact.second, 59);
  const uint32_t time = TimeFromCalendar(exact);
  // 31 April comes back as 1 May.
  return CalendarFromTime(time).day == calendar.day ? time : 0;
}

uint32_t ReadIsoTime(std::string_view text) {
  constexpr std::string_view kShape = "0000-00-00T00:00:00";
  // "2024-05-01T12:34:56.789+02:00"
  text = TrimBlanks(text);
  if (text.size() < kShape.size()) return 0;
  for (size_t i = 0; i < kShape.size(); ++i) {
    // A '0' of the shape stands for any character; ReadWholeNumber() refuses what is no digit.
    if (kShape[i] != '0' && text[i] != kShape[i]) return 0;
  }
  const uint32_t time = TimeFromFile({.year = ReadWholeNumber(text.substr(0, 4)),
                                      .month = ReadWholeNumber(text.substr(5, 2)),
                                      .day = ReadWholeNumber(text.substr(8, 2)),
                                      .hour = ReadWholeNumber(text.substr(11, 2)),
                                      .minute = ReadWholeNumber(text.substr(14, 2)),
                                      .second = ReadWholeNumber(text.substr(17, 2))});
  text.remove_prefix(kShape.size());
  DropFraction(text);
  int offset_minutes = 0;
  if (time == 0 || !ReadZone(text, offset_minutes)) return 0;
  // The first hours of the scale east of Greenwich lie before it: unknown.
  return static_cast<uint32_t>(std::max<int64_t>(int64_t{time} - int64_t{offset_minutes} * 60, 0));
}

}  // namespace skyhaul
