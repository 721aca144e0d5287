#include "protocols/flytec/track_list.h"

#include <utility>
#include <vector>

#include "core/count_message.h"
#include "protocols/flytec/models.h"
#include "protocols/flytec/requests.h"
#include "protocols/flytec/track_list_line.h"
#include "protocols/sentence/line_collector.h"
#include "protocols/sentence/write_sentence.h"

namespace skyhaul::flytec {

namespace {

constexpr uint32_t kSilence_ms = 1000;
constexpr size_t kLongestLine = 79;
constexpr size_t kSlots = 255;
constexpr const char* kTitle = "Read GPS track list";

// Collects lines until the instrument is silent. Returns 0 or a negative number after its message.
int ReceiveSlots(Job& job, std::vector<TrackListEntry>& slots) {
  LineCollector collector;
  collector.limit = kLongestLine;
  const char* bad = nullptr;
  const auto feed = [&](uint8_t byte) {
    if (!CollectLineByte(collector, byte)) return Feed::kMore;
    TrackListEntry entry;
    bad = ParseTrackListLine(collector.line, entry);
    if (bad != nullptr) return Feed::kDone;
    // By index and not in the order of arrival: a line that comes twice counts once, the last one.
    if (entry.index < kSlots) slots[entry.index] = entry;
    return Feed::kMore;
  };
  const int result =
      ReadWithDeadline(job.link, {.timeout_ms = kSilence_ms, .since_last_byte = true}, feed);
  if (bad != nullptr) {
    ShowMessage(job.operation, bad, kTitle);
    return -1;
  }
  if (result == kPortFailed) ShowMessage(job.operation, "E503 COM port read error", kTitle);
  return result == kTimedOut ? 0 : result;
}

}  // namespace

int ReadTrackList(Job& job, const ProductData& product) {
  // The caller knows whether it can do without the list, so nothing is shown here.
  if (!HasTrackList(product.device_name, product.software)) return kNoTrackList;
  if (WriteSentence(job.link, kRequestTrackList) != 0) {
    ShowMessage(job.operation, "E500 COM port write error", kTitle);
    return -1;
  }
  std::vector<TrackListEntry> slots(kSlots);
  const int received = ReceiveSlots(job, slots);
  if (received != 0) return received;
  for (TrackListEntry& slot : slots) {
    // A slot without a start was never filled. No real flight starts at the zero of the time scale.
    if (slot.start_time != 0) job.data.track_list.push_back(std::move(slot));
  }
  const auto count = static_cast<uint32_t>(job.data.track_list.size());
  ShowStatus(job.operation, FormatCountMessage("% tracks in track list found", count));
  return static_cast<int>(count);
}

int FlightListJob(Job& job) {
  ProductData product;
  const int identified = ReadProductData(job, product);
  return identified != 0 ? identified : ReadTrackList(job, product);
}

}  // namespace skyhaul::flytec
