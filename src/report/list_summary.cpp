#include "report/list_summary.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <utility>
#include <vector>

#include "core/airspace_text.h"
#include "core/text/numbers.h"
#include "core/units.h"
#include "report/line.h"

namespace skyhaul {

namespace {

constexpr int kDegreeDecimals = 5;  // about a metre

// A list that crosses the 180th meridian reads as one around the whole globe. Its bounds are still
// true, only wide.
void Include(ListSummary& summary, int32_t lat, int32_t lon, bool first) {
  summary.south = first ? lat : std::min(summary.south, lat);
  summary.north = first ? lat : std::max(summary.north, lat);
  summary.west = first ? lon : std::min(summary.west, lon);
  summary.east = first ? lon : std::max(summary.east, lon);
}

// Centres count as well: a circle has no other point. Its radius is left out, which is near enough
// for a person who wants to know which country a file is about.
std::vector<AirspacePosition> Positions(const CtrRecord& airspace) {
  std::vector<AirspacePosition> positions;
  for (const AirspaceSegment& segment : airspace.segments) {
    // The ends of an arc are its neighbours' points; its start stands for it.
    positions.push_back(segment.type == SegmentType::kArcByPoints ? segment.start : segment.point);
  }
  return positions;
}

// "46.21000 to 47.03512"; south and west are negative.
std::string Range(int32_t from, int32_t to) {
  return FixedText(SemicirclesToDegrees(from), kDegreeDecimals) + " to " +
         FixedText(SemicirclesToDegrees(to), kDegreeDecimals);
}

// "A 3, CTR 12, R 7": the map keeps the classes in the order of the alphabet.
std::string Classes(const ListSummary& summary) {
  std::string text;
  for (const auto& [name, count] : summary.classes) {
    text += (text.empty() ? "" : ", ") + name + ' ' + std::to_string(count);
  }
  return text;
}

// "500 m 1, 2000 m 12"; empty for files, whose airspaces have none.
std::string WarningLine(const ListSummary& summary) {
  std::string text;
  for (const auto& [warning_m, count] : summary.warnings) {
    text += (text.empty() ? "" : ", ") + std::to_string(warning_m) + " m " + std::to_string(count);
  }
  return text.empty() ? "" : Line("Warnings at", text);
}

std::string DamageLines(const ListSummary& summary) {
  std::string text;
  for (const CtrRecord& airspace : summary.airspaces) {
    if (!airspace.damage.empty()) text += Line("Damaged", airspace.name + ": " + airspace.damage);
  }
  return text;
}

// What is optional in an airspace, as JSON calls it.
struct OptionalText {
  const char* key;
  std::string CtrRecord::*field;
};

constexpr OptionalText kOptionalTexts[] = {
    {.key = "type", .field = &CtrRecord::type},
    {.key = "frequency", .field = &CtrRecord::frequency},
    {.key = "station", .field = &CtrRecord::station},
    {.key = "id", .field = &CtrRecord::id},
    {.key = "transponder", .field = &CtrRecord::transponder},
    {.key = "activation", .field = &CtrRecord::activation},
    {.key = "damage", .field = &CtrRecord::damage},
};

nlohmann::ordered_json AirspaceJson(const CtrRecord& airspace) {
  nlohmann::ordered_json json = {{"name", airspace.name}, {"class", airspace.airspace_class}};
  for (const OptionalText& optional : kOptionalTexts) {
    const std::string& text = airspace.*optional.field;
    if (!text.empty()) json[optional.key] = text;
  }
  if (airspace.warning_m) json["warning_m"] = *airspace.warning_m;
  return json;
}

const char* KindName(const ListSummary& summary) {
  return summary.kind == ListSummary::Kind::kWaypoints ? "waypoints" : "airspaces";
}

}  // namespace

ListSummary SummariseWaypoints(const std::string& file, std::span<const FileWaypoint> waypoints) {
  const auto [lowest, highest] =
      std::ranges::minmax_element(waypoints, {}, &FileWaypoint::altitude_m);
  ListSummary summary = {.file = file,
                         .kind = ListSummary::Kind::kWaypoints,
                         .count = waypoints.size(),
                         .lowest_m = lowest->altitude_m,
                         .highest_m = highest->altitude_m};
  for (const FileWaypoint& waypoint : waypoints) {
    // The first waypoint sets all four bounds, because 0 is a place like any other.
    Include(summary, waypoint.lat, waypoint.lon, &waypoint == waypoints.data());
  }
  return summary;
}

ListSummary SummariseAirspaces(const std::string& file, std::span<const CtrRecord> airspaces) {
  ListSummary summary = {
      .file = file, .kind = ListSummary::Kind::kAirspaces, .count = airspaces.size()};
  bool first = true;
  for (const CtrRecord& airspace : airspaces) {
    ++summary.classes[ClassAndType(airspace)];
    if (airspace.warning_m) ++summary.warnings[*airspace.warning_m];
    for (const AirspacePosition& position : Positions(airspace)) {
      Include(summary, position.lat, position.lon, first);
      first = false;
    }
    summary.has_positions = !first;
    summary.airspaces.push_back(airspace);
    // An outline of thousands of points is not wanted for a line of a list.
    summary.airspaces.back().segments = {};
  }
  return summary;
}

std::string SummaryText(const ListSummary& summary) {
  std::string text = Line("File", summary.file) +
                     Line("Holds", std::to_string(summary.count) + ' ' + KindName(summary));
  // Zeros would be a place off Africa.
  if (summary.has_positions) {
    text += Line("Latitude", Range(summary.south, summary.north)) +
            Line("Longitude", Range(summary.west, summary.east));
  }
  if (summary.kind == ListSummary::Kind::kAirspaces)
    return text + Line("Classes", Classes(summary)) + WarningLine(summary) + DamageLines(summary);
  return text + Line("Altitude", FixedText(summary.lowest_m, 0) + " to " +
                                     FixedText(summary.highest_m, 0) + " m");
}

nlohmann::ordered_json SummaryJson(const ListSummary& summary) {
  nlohmann::ordered_json json = {{"kind", KindName(summary)},
                                 {"file", summary.file},
                                 {"count", summary.count},
                                 {"south", SemicirclesToDegrees(summary.south)},
                                 {"north", SemicirclesToDegrees(summary.north)},
                                 {"west", SemicirclesToDegrees(summary.west)},
                                 {"east", SemicirclesToDegrees(summary.east)}};
  if (!summary.has_positions) {
    for (const char* key : {"south", "north", "west", "east"}) json[key] = nullptr;
  }
  // Airspaces have limits of several kinds, which no one range of metres can hold.
  if (summary.kind == ListSummary::Kind::kAirspaces) {
    json["classes"] = summary.classes;
    nlohmann::ordered_json list = nlohmann::ordered_json::array();
    for (const CtrRecord& airspace : summary.airspaces) list.push_back(AirspaceJson(airspace));
    json["airspaces"] = std::move(list);
  } else {
    json["lowest_m"] = summary.lowest_m;
    json["highest_m"] = summary.highest_m;
  }
  return json;
}

}  // namespace skyhaul
