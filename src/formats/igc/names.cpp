#include "formats/igc/names.h"

#include <string_view>

#include "core/time_scale.h"
#include "formats/igc/digits.h"

namespace skyhaul {

namespace {

std::string DateText(const CalendarTime& calendar) {
  std::string text;
  AppendNumber(text, static_cast<uint32_t>(calendar.year));
  AppendNumber(text, static_cast<uint32_t>(calendar.month), 2);
  AppendNumber(text, static_cast<uint32_t>(calendar.day), 2);
  return text;
}

std::string TimeText(const CalendarTime& calendar) {
  std::string text;
  AppendNumber(text, static_cast<uint32_t>(calendar.hour), 2);
  AppendNumber(text, static_cast<uint32_t>(calendar.minute), 2);
  AppendNumber(text, static_cast<uint32_t>(calendar.second), 2);
  return text;
}

void ReplaceAll(std::string& text, std::string_view key, const std::string& value) {
  for (size_t at = text.find(key); at != std::string::npos; at = text.find(key, at)) {
    text.replace(at, key.size(), value);
    at += value.size();
  }
}

}  // namespace

std::string ExpandNameTemplate(const std::string& path, uint32_t first_fix_time) {
  const CalendarTime calendar = CalendarFromTime(first_fix_time);
  std::string expanded = path;
  ReplaceAll(expanded, "$date", DateText(calendar));
  ReplaceAll(expanded, "$time", TimeText(calendar));
  return expanded;
}

std::string IgcLongName(uint32_t first_fix_time, const std::string& manufacturer,
                        const std::string& serial, int flight_number) {
  const CalendarTime calendar = CalendarFromTime(first_fix_time);
  std::string name;
  AppendNumber(name, static_cast<uint32_t>(calendar.year));
  name += '-';
  AppendNumber(name, static_cast<uint32_t>(calendar.month), 2);
  name += '-';
  AppendNumber(name, static_cast<uint32_t>(calendar.day), 2);
  name += '-';
  name += manufacturer;
  name += '-';
  name += serial;
  name += '-';
  AppendNumber(name, static_cast<uint32_t>(flight_number), 2);
  return name + ".igc";
}

}  // namespace skyhaul
