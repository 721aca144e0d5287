#include "report/file_summary.h"

#include <nlohmann/json.hpp>

namespace skyhaul {

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
