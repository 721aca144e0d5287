#include "report/file_summary.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace skyhaul {

bool HasDamage(const FileSummary& summary) {
  const auto* list = std::get_if<ListSummary>(&summary);
  return list != nullptr && std::ranges::any_of(list->airspaces, [](const CtrRecord& airspace) {
           return !airspace.damage.empty();
         });
}

std::string SummaryText(const FileSummary& summary) {
  return std::visit([](const auto& any) { return SummaryText(any); }, summary);
}

std::string SummariesJson(std::span<const FileSummary> summaries) {
  nlohmann::ordered_json files = nlohmann::ordered_json::array();
  for (const FileSummary& summary : summaries) {
    files.push_back(std::visit([](const auto& any) { return SummaryJson(any); }, summary));
  }
  // Paths on Linux may hold any bytes. Those that are not UTF-8 are replaced, since dump() would
  // throw otherwise.
  return files.dump(2, ' ', true, nlohmann::json::error_handler_t::replace) + "\n";
}

}  // namespace skyhaul
