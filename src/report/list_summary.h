#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <nlohmann/json_fwd.hpp>
#include <span>
#include <string>
#include <vector>

#include "core/airspace.h"
#include "core/file_waypoint.h"

namespace skyhaul {

// A list of waypoints or airspaces as a person wants to know it: is it the one for this place?
struct ListSummary {
  enum class Kind { kWaypoints, kAirspaces };
  std::string file;
  Kind kind = Kind::kWaypoints;
  size_t count = 0;
  bool has_positions = true;  // false when damaged airspaces have lost all of theirs
  int32_t south = 0;          // semicircles, of all waypoints or all points of the outlines
  int32_t north = 0;
  int32_t west = 0;
  int32_t east = 0;
  double lowest_m = 0;  // of waypoints
  double highest_m = 0;
  std::map<std::string, size_t> classes;  // how many airspaces of each class and type: "C CTR"
  std::map<uint32_t, size_t> warnings;    // and of each warning distance in metres that is given
  std::vector<CtrRecord> airspaces;       // without their outlines
};

// The lists must not be empty.
ListSummary SummariseWaypoints(const std::string& file, std::span<const FileWaypoint> waypoints);
ListSummary SummariseAirspaces(const std::string& file, std::span<const CtrRecord> airspaces);

// Lines for a terminal, each ended by a line feed. Every damaged airspace has one.
std::string SummaryText(const ListSummary& summary);

// Of an airspace what its file does not say is left out.
nlohmann::ordered_json SummaryJson(const ListSummary& summary);

}  // namespace skyhaul
