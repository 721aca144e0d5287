#include "device/choose_flights.h"

#include <algorithm>
#include <string>

namespace skyhaul {

namespace {

// Of flights that start at the same second the first listed counts as the newest.
uint32_t NewestFlight(const std::vector<TrackListEntry>& list) {
  return std::ranges::max_element(list, {}, &TrackListEntry::start_time)->index;
}

bool IsListed(const std::vector<TrackListEntry>& list, uint32_t index) {
  return std::ranges::find(list, index, &TrackListEntry::index) != list.end();
}

// A list shows numbers from 1; the instrument counts from 0.
void TakeNumbers(const Job& job, std::vector<uint32_t>& chosen) {
  for (const uint32_t number : job.choice.numbers) {
    if (IsListed(job.data.track_list, number - 1)) {
      chosen.push_back(number - 1);
      continue;
    }
    ShowMessage(job.operation, "There is no track " + std::to_string(number) + " in the list",
                "Select track");
    return chosen.clear();
  }
}

void AskPerson(const Job& job, std::vector<uint32_t>& chosen) {
  const Shell* shell = job.operation.shell;
  if (shell == nullptr) return;
  if (shell->choose_tracks(shell->context, job.data.track_list, chosen) <= 0) chosen.clear();
}

void ShowChosen(const Job& job, const std::vector<uint32_t>& chosen) {
  const Shell* shell = job.operation.shell;
  if (shell == nullptr || job.operation.quiet) return;
  shell->tracks_chosen(shell->context, job.data.track_list, chosen);
}

}  // namespace

int ChooseFlights(const Job& job, std::vector<uint32_t>& chosen) {
  chosen.clear();
  switch (job.choice.how) {
    case FlightChoice::How::kAsk:
      AskPerson(job, chosen);
      break;
    case FlightChoice::How::kNewest:
      chosen.push_back(NewestFlight(job.data.track_list));
      break;
    case FlightChoice::How::kNumbers:
      // The list is shown even when a number is wrong: it tells which numbers there are.
      TakeNumbers(job, chosen);
      break;
  }
  // From the newest to the oldest, each once, in whatever order and however often they were named.
  std::ranges::sort(chosen);
  chosen.erase(std::unique(chosen.begin(), chosen.end()), chosen.end());
  ShowChosen(job, chosen);
  return chosen.empty() ? -1 : static_cast<int>(chosen.size());
}

}  // namespace skyhaul
