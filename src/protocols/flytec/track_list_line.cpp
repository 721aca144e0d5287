#include "protocols/flytec/track_list_line.h"

#include <vector>

#include "core/time_scale.h"
#include "protocols/sentence/fields.h"

namespace skyhaul::flytec {

namespace {

constexpr size_t kMostFields = 10;
constexpr size_t kLeastFields = 6;
constexpr size_t kLongestLine = 100;

// Three numbers of one or two digits with a separator between them. Returns 0 or -1.
int ParseTriple(std::string_view text, char separator, uint32_t (&numbers)[3]) {
  size_t at = 0;
  for (int i = 0; i < 3; ++i) {
    const size_t end = i < 2 ? text.find(separator, at) : text.size();
    // ParseUintField alone would take a blank text for 0 and any length.
    if (end == std::string_view::npos || end == at || end - at > 2) return -1;
    if (ParseUintField(text.substr(at, end - at), numbers[i]) != 0) return -1;
    at = end + 1;
  }
  return 0;
}

int ParseDate(std::string_view text, CalendarTime& calendar) {
  uint32_t date[3];
  if (ParseTriple(text, '.', date) != 0) return -1;
  const auto [day, month, year] = date;
  // The lengths of the months are left to the instrument's clock.
  if (day < 1 || day > 31 || month < 1 || month > 12) return -1;
  calendar = {.year = static_cast<int>(2000 + year),
              .month = static_cast<int>(month),
              .day = static_cast<int>(day)};
  return 0;
}

// Hours go up to the limit.
int ParseSeconds(std::string_view text, uint32_t hour_limit, uint32_t& seconds) {
  uint32_t time[3];
  if (ParseTriple(text, ':', time) != 0) return -1;
  const auto [hour, minute, second] = time;
  if (hour > hour_limit || minute > 59 || second > 59) return -1;
  seconds = (hour * 60 + minute) * 60 + second;
  return 0;
}

std::string_view WithoutChecksum(std::string_view field) {
  return field.substr(0, field.find('*'));
}

}  // namespace

// $PBRTL,NN,n,DD.MM.YY,HH:MM:SS,HH:MM:SS*hh, for example
// $PBRTL,07,01,27.04.17,15:29:56,00:04:55*7D
const char* ParseTrackListLine(std::string_view line, TrackListEntry& entry, uint32_t& announced) {
  const std::vector<std::string_view> fields = SplitFields(line, kMostFields);
  if (fields.size() < kLeastFields) return "NMEA line parse error";
  if (fields[0] != "$PBRTL") return "Bad NMEA identifier";
  if (ParseUintField(fields[1], announced) != 0) return "Bad track count parameter";
  if (ParseUintField(fields[2], entry.index) != 0) return "Bad track index parameter";
  CalendarTime date;
  if (ParseDate(fields[3], date) != 0) return "Bad track date parameter";
  uint32_t start_s = 0;
  // A start is a time of day; a duration may have up to 99 hours.
  if (ParseSeconds(fields[4], 23, start_s) != 0) return "Bad track time parameter";
  if (ParseSeconds(WithoutChecksum(fields[5]), 99, entry.duration_s) != 0) {
    return "Bad track duration parameter";
  }
  entry.start_time = TimeFromCalendar(date) + start_s;
  entry.line = line.substr(0, kLongestLine);
  return nullptr;
}

}  // namespace skyhaul::flytec
