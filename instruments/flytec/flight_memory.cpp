#include "instruments/flytec/flight_memory.h"

#include <algorithm>
#include <cstdio>
#include <string_view>

#include "core/time_scale.h"
#include "formats/igc/read_igc.h"
#include "instruments/flytec/instrument_text.h"

namespace skyhaul::flytec_simulator {

namespace {

// Midnight of the day that an HFDTE line names, or 0.
uint32_t DayOf(std::string_view line) {
  const size_t at = line.find_first_of("0123456789");
  if (at == std::string_view::npos) return 0;
  const int day = LeadingNumber(line.substr(at), 2);
  const int month = LeadingNumber(line.substr(std::min(at + 2, line.size())), 2);
  const int year = LeadingNumber(line.substr(std::min(at + 4, line.size())), 2);
  if (day < 1 || day > 31 || month < 1 || month > 12 || year < 0) return 0;
  return TimeFromCalendar({.year = 2000 + year, .month = month, .day = day});
}

// Seconds after midnight of a B line, or -1.
int TimeOfDay(std::string_view line) {
  if (line.size() < 7) return -1;
  const int hour = LeadingNumber(line.substr(1), 2);
  const int minute = LeadingNumber(line.substr(3), 2);
  const int second = LeadingNumber(line.substr(5), 2);
  if (hour < 0 || minute < 0 || second < 0) return -1;
  return (hour * 60 + minute) * 60 + second;
}

StoredFlight ScanTimes(std::string_view text) {
  uint32_t day = 0;
  int first = -1;
  int last = -1;
  while (!text.empty()) {
    const size_t end = std::min(text.find('\n'), text.size());
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    if (line.starts_with("HFDTE") && day == 0) day = DayOf(line);
    const int time_of_day = line.starts_with('B') ? TimeOfDay(line) : -1;
    if (time_of_day < 0) continue;
    if (first < 0) first = time_of_day;
    last = time_of_day;
  }
  if (first < 0) return {.start_time = day};
  // Past midnight. The clock of a flight never runs back.
  if (last < first) last += static_cast<int>(kSecondsPerDay);
  return {.start_time = day + static_cast<uint32_t>(first),
          .duration_s = static_cast<uint32_t>(last - first)};
}

}  // namespace

std::string FlightListBody(size_t total, size_t index, const StoredFlight& flight) {
  const CalendarTime start = CalendarFromTime(flight.start_time);
  char line[80];
  (void)std::snprintf(
      line, sizeof line, "PBRTL,%02zu,%02zu,%02d.%02d.%02d,%02d:%02d:%02d,%02u:%02u:%02u", total,
      index, start.day, start.month, start.year % 100, start.hour, start.minute, start.second,
      flight.duration_s / 3600, flight.duration_s / 60 % 60, flight.duration_s % 60);
  return line;
}

StoredFlight FlightFromIgc(const std::string& igc_text) {
  std::vector<TrackPoint> points;
  std::string message;
  StoredFlight flight;
  if (igc::Read(igc_text, points, message) > 0) {
    flight.start_time = points.front().time;
    flight.duration_s = points.back().time - points.front().time;
  } else {
    flight = ScanTimes(igc_text);
  }
  flight.igc_text = igc_text;
  return flight;
}

void SortNewestFirst(std::vector<StoredFlight>& flights) {
  std::stable_sort(flights.begin(), flights.end(),
                   [](const auto& a, const auto& b) { return a.start_time > b.start_time; });
}

}  // namespace skyhaul::flytec_simulator
