#include "formats/igc/names.h"

#include <string_view>

#include "core/text/date_time.h"
#include "core/text/digits.h"
#include "core/time_scale.h"

namespace skyhaul::igc {

namespace {

void ReplaceAll(std::string& text, std::string_view key, const std::string& value) {
  for (size_t at = text.find(key); at != std::string::npos; at = text.find(key, at)) {
    text.replace(at, key.size(), value);
    // The search goes on behind the value, so it ends even if a value should hold the key.
    at += value.size();
  }
}

}  // namespace

std::string ExpandNameTemplate(const std::string& path, uint32_t first_fix_time) {
  const CalendarTime calendar = CalendarFromTime(first_fix_time);
  std::string expanded = path;
  // "logs/$date/" becomes "logs/20260514/". No separators, because a colon cannot stand in a file
  // name everywhere.
  ReplaceAll(expanded, "$date", DateText(calendar, ""));
  ReplaceAll(expanded, "$time", TimeText(calendar, ""));
  return expanded;
}

std::string LongName(uint32_t first_fix_time, const std::string& manufacturer,
                     const std::string& serial, int flight_number) {
  // "2026-05-14-xsh-000-01.igc"; sorted by name the flights of a folder are in the order of days.
  return DateText(CalendarFromTime(first_fix_time)) + '-' + manufacturer + '-' +
         (serial.empty() ? "000" : serial) + '-' +
         PaddedNumber(static_cast<uint64_t>(flight_number), 2) + ".igc";
}

}  // namespace skyhaul::igc
