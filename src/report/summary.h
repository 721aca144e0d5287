#pragma once

#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <span>
#include <string>
#include <string_view>

#include "core/track_point.h"
#include "formats/igc/header.h"
#include "formats/igc/read_track.h"
#include "formats/igc/security_record.h"

namespace skyhaul {

// What a pilot wants to read about a flight.
struct FlightSummary {
  std::string file;
  igc::Header header;
  uint32_t fixes = 0;
  uint32_t take_off_time = 0;  // seconds since 1989-12-31 00:00:00 UTC
  uint32_t landing_time = 0;
  bool flown = false;  // false: nothing moves like a flight; the times are the first and last fix's
  int32_t highest_gps_m = 0;
  int32_t highest_pressure_m = 0;
  igc::SecurityCheck security = igc::SecurityCheck::kNoRecord;
  igc::Reading reading;  // what was repaired and left out; SummariseFlight() does not know it
};

// points must not be empty; text is the file they were read from.
FlightSummary SummariseFlight(const std::string& file, std::string_view text,
                              std::span<const TrackPoint> points);

// Lines for a terminal, each ended by a line feed.
std::string SummaryText(const FlightSummary& summary);

nlohmann::ordered_json SummaryJson(const FlightSummary& summary);

}  // namespace skyhaul
