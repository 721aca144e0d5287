#include "instruments/flytec/flight_memory.h"

#include <algorithm>
#include <cstdio>
#include <string_view>

#include "core/geodesy/geodesic.h"
#include "core/time_scale.h"
#include "core/units.h"
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

int SpeedInKmh(const TrackPoint& from, const TrackPoint& to, uint32_t seconds) {
  const double distance_m =
      GeodesicDistance_m(SemicirclesToRadians(from.lat), SemicirclesToRadians(from.lon),
                         SemicirclesToRadians(to.lat), SemicirclesToRadians(to.lon));
  return static_cast<int>(std::min(distance_m / seconds * 3.6, 999.0));
}

FlightExtremes ExtremesOf(const std::vector<TrackPoint>& points) {
  FlightExtremes extremes;
  const int start_m = points.front().pressure_alt;
  extremes.highest_m = start_m;
  if (points.size() > 1) extremes.interval_s = points[1].time - points[0].time;
  for (size_t i = 1; i < points.size(); ++i) {
    const TrackPoint& from = points[i - 1];
    const TrackPoint& to = points[i];
    const int climb_m = to.pressure_alt - from.pressure_alt;
    extremes.highest_m = std::max(extremes.highest_m, to.pressure_alt);
    extremes.climbed_m += std::max(climb_m, 0);
    if (to.time <= from.time) continue;
    const uint32_t seconds = to.time - from.time;
    const int climb_dm_s = climb_m * 10 / static_cast<int>(seconds);
    extremes.best_climb_dm_s = std::max(extremes.best_climb_dm_s, climb_dm_s);
    extremes.worst_sink_dm_s = std::min(extremes.worst_sink_dm_s, climb_dm_s);
    extremes.fastest_km_h = std::max(extremes.fastest_km_h, SpeedInKmh(from, to, seconds));
  }
  extremes.highest_above_start_m = extremes.highest_m - start_m;
  return extremes;
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

std::string ExtendedFlightListBody(size_t total, size_t index, const StoredFlight& flight) {
  // PBRTLE,01,00,24.05.26,09:00:00,02:11:58,02431,01211,06120,01,04.2,-03.1,062
  const FlightExtremes& extremes = flight.extremes;
  // Each field has its width, so what cannot be written in it is the most that can.
  const auto within = [](int value, int most) { return std::clamp(value, -most / 10, most); };
  const int climb = within(extremes.best_climb_dm_s, 999);
  const int sink = std::clamp(-extremes.worst_sink_dm_s, 0, 999);
  char text[96];
  (void)std::snprintf(text, sizeof text, ",%05d,%05d,%05d,%02u,%02d.%d,-%02d.%d,%03d",
                      within(extremes.highest_m, 99999),
                      within(extremes.highest_above_start_m, 99999),
                      within(extremes.climbed_m, 99999), std::min(extremes.interval_s, 99U),
                      climb / 10, climb % 10, sink / 10, sink % 10, extremes.fastest_km_h);
  return "PBRTLE" + FlightListBody(total, index, flight).substr(5) + text;
}

StoredFlight FlightFromIgc(const std::string& igc_text) {
  std::vector<TrackPoint> points;
  std::string message;
  StoredFlight flight;
  if (igc::Read(igc_text, points, message) > 0) {
    flight.start_time = points.front().time;
    flight.duration_s = points.back().time - points.front().time;
    flight.extremes = ExtremesOf(points);
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
