#include "report/summary.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "analysis/flight_times.h"
#include "core/text/date_time.h"
#include "core/time_scale.h"
#include "core/units.h"
#include "report/line.h"

namespace skyhaul {

namespace {

uint32_t Duration_s(const FlightSummary& summary) {
  // A clock that was set back during the flight must not give a duration of 136 years.
  return std::max(summary.landing_time, summary.take_off_time) - summary.take_off_time;
}

std::string Instrument(const igc::Header& header) {
  // The type line of the header says the maker and model; the A record only has a code and a
  // number.
  if (!header.recorder.empty()) return header.recorder;
  if (header.manufacturer.empty()) return "";
  // "XSH ABC (remark)" when the record has a remark, else "XSH ABC".
  const std::string code = header.manufacturer + " " + header.serial;
  return header.remark.empty() ? code : code + " (" + header.remark + ")";
}

std::string Iso8601(uint32_t time) {
  std::string text;
  AppendIsoTime(text, time, 0);
  return text;
}

const char* SecurityWord(igc::SecurityCheck check) {
  switch (check) {
    case igc::SecurityCheck::kPassed:
      return "passed";
    case igc::SecurityCheck::kFailed:
      return "failed";
    case igc::SecurityCheck::kNoRecord:
      break;
  }
  return "none";
}

// Only what is out of the ordinary has a line.
std::string ReadingText(const igc::Reading& reading) {
  std::string text;
  if (!reading.strict_message.empty()) {
    text += Line("Repaired", reading.strict_message + "; " +
                                 igc::LeftOutText(igc::LinesLeftOut(reading.repairs)));
  }
  if (reading.flights > 1) {
    text += Line("Flights", std::to_string(reading.flights) + " in the file, this is the first");
  }
  if (reading.left_out.count > 0)
    text += Line("Left out", igc::UnknownPlacesText(reading.left_out));
  return text;
}

nlohmann::ordered_json RepairsJson(const igc::Repairs& repairs) {
  nlohmann::ordered_json json = nlohmann::ordered_json::array();
  for (const igc::Repair& repair : repairs) {
    json.push_back({{"kind", igc::RepairKey(repair.kind)},
                    {"lines", repair.count},
                    {"first_line", repair.first_line}});
  }
  return json;
}

}  // namespace

FlightSummary SummariseFlight(const std::string& file, std::string_view text,
                              std::span<const TrackPoint> points) {
  const FlightTimes times = FindFlightTimes(points);
  // max_element() takes the first of equals. Only the altitude is shown, so any of them would do.
  const auto by_gps = [](const auto& a, const auto& b) { return a.gps_alt_dm < b.gps_alt_dm; };
  const auto by_pressure = [](const auto& a, const auto& b) {
    return a.pressure_alt < b.pressure_alt;
  };
  return {.file = file,
          .header = igc::ReadHeader(text),
          .fixes = static_cast<uint32_t>(points.size()),
          .take_off_time = points[times.take_off].time,
          .landing_time = points[times.landing].time,
          .flown = times.flown,
          .highest_gps_m = DecimetresToMetres(
              std::max_element(points.begin(), points.end(), by_gps)->gps_alt_dm),
          .highest_pressure_m =
              std::max_element(points.begin(), points.end(), by_pressure)->pressure_alt,
          .security = igc::CheckSecurityRecord(text)};
}

std::string SummaryText(const FlightSummary& summary) {
  const std::string highest = std::to_string(summary.highest_gps_m) + " m GPS, " +
                              std::to_string(summary.highest_pressure_m) + " m pressure";
  // Without a flight these are no take-off and no landing, and should not be called so.
  const char* first = summary.flown ? "Take-off" : "First fix";
  const char* last = summary.flown ? "Landing" : "Last fix";
  return Line("File", summary.file) + Line("Instrument", Instrument(summary.header)) +
         Line("Pilot", summary.header.pilot) +
         Line("Date", DateText(CalendarFromTime(summary.take_off_time))) +
         // Times of day: the date of the take-off stands above, and a landing after midnight starts
         // at 00.
         Line(first, DurationText(summary.take_off_time % kSecondsPerDay) + " UTC") +
         Line(last, DurationText(summary.landing_time % kSecondsPerDay) + " UTC") +
         Line("Duration", DurationText(Duration_s(summary))) +
         Line("Fixes", std::to_string(summary.fixes)) + Line("Highest point", highest) +
         Line("Security", igc::SecurityCheckText(summary.security)) + ReadingText(summary.reading);
}

nlohmann::ordered_json SummaryJson(const FlightSummary& summary) {
  return {{"kind", "flight"},
          {"file", summary.file},
          {"instrument", Instrument(summary.header)},
          {"pilot", summary.header.pilot},
          {"glider_type", summary.header.glider_type},
          {"glider_id", summary.header.glider_id},
          {"site", summary.header.site},
          {"flown", summary.flown},
          {"take_off", Iso8601(summary.take_off_time)},
          {"landing", Iso8601(summary.landing_time)},
          {"duration_s", Duration_s(summary)},
          {"fixes", summary.fixes},
          {"highest_gps_m", summary.highest_gps_m},
          {"highest_pressure_m", summary.highest_pressure_m},
          {"security", SecurityWord(summary.security)},
          {"strict_message", summary.reading.strict_message},
          {"repairs", RepairsJson(summary.reading.repairs)},
          {"flights_in_file", summary.reading.flights},
          {"flights_refused", summary.reading.refused},
          {"fixes_left_out", summary.reading.left_out.count},
          {"first_left_out_line", summary.reading.left_out.first_line}};
}

}  // namespace skyhaul
