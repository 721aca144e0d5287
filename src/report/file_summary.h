#pragma once

#include <span>
#include <string>
#include <variant>

#include "report/list_summary.h"
#include "report/summary.h"

namespace skyhaul {

// What a person wants to read about a file: a flight, or a list of waypoints or airspaces.
using FileSummary = std::variant<FlightSummary, ListSummary>;

// Whether an airspace of the file is damaged, so that what is shown is not what the file meant.
bool HasDamage(const FileSummary& summary);

// Lines for a terminal, each ended by a line feed.
std::string SummaryText(const FileSummary& summary);

// A JSON array with one object per file, in which "kind" is "flight", "waypoints" or "airspaces";
// docs/command-line.md has the keys.
std::string SummariesJson(std::span<const FileSummary> summaries);

}  // namespace skyhaul
