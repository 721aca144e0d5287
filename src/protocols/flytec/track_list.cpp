#include "protocols/flytec/track_list.h"

#include <algorithm>
#include <set>
#include <string_view>
#include <utility>
#include <vector>

#include "core/count_message.h"
#include "protocols/flytec/models.h"
#include "protocols/flytec/requests.h"
#include "protocols/flytec/track_list_line.h"
#include "protocols/sentence/checksum.h"
#include "protocols/sentence/line_collector.h"
#include "protocols/sentence/write_sentence.h"

namespace skyhaul::flytec {

namespace {

constexpr uint32_t kSilence_ms = 1000;
// An instrument that was only slow takes no request while it sends.
constexpr uint32_t kBeforeSecond_ms = 3000;
constexpr size_t kLongestLine = 79;
constexpr size_t kSlots = 255;
constexpr const char* kTitle = "Read GPS track list";

// The list while it is read, once or twice.
struct Reading {
  std::vector<TrackListEntry> slots = std::vector<TrackListEntry>(kSlots);
  std::set<uint32_t> indices;  // received, those without a slot too
  uint32_t announced = 0;
  bool begun = false;        // a line of the list has come in this reading
  bool bent = false;         // a line contradicted its checksum
  bool sums_differ = false;  // every line does: the instrument has a sum of its own
  bool again = false;        // the second reading
};

// Returns a message when the line ends the reading.
const char* TakeLine(Reading& reading, std::string_view line) {
  // An answer to an earlier request may come late.
  if (!reading.begun && !line.starts_with("$PBRTL,")) return nullptr;
  reading.begun = true;
  // A changed byte may leave a line that can be read: another flight's number, another day. Without
  // it the list is too short.
  if (ContradictsChecksum(line) && !reading.sums_differ) {
    reading.bent = true;
    return nullptr;
  }
  TrackListEntry entry;
  uint32_t announced = 0;
  const char* fault = ParseTrackListLine(line, entry, announced);
  // A byte that was lost may have taken the checksum with it, so the first time counts as bent too.
  if (fault != nullptr) return reading.again ? fault : nullptr;
  reading.announced = std::max(reading.announced, announced);
  reading.indices.insert(entry.index);
  // By index and not in the order of arrival: a line that comes twice counts once, the last one.
  if (entry.index < kSlots) reading.slots[entry.index] = std::move(entry);
  return nullptr;
}

bool IsWhole(const Reading& reading) {
  return !reading.indices.empty() && reading.indices.size() >= reading.announced;
}

// Asks for the list and collects lines until the instrument is silent. Returns 0 or a negative
// number after its message.
int ReadOnce(Job& job, Reading& reading) {
  if (WriteSentence(job.link, kRequestTrackList) != 0) {
    ShowMessage(job.operation, "E500 COM port write error", kTitle);
    return -1;
  }
  LineCollector collector;
  collector.limit = kLongestLine;
  const char* bad = nullptr;
  const auto feed = [&](uint8_t byte) {
    if (!CollectLineByte(collector, byte)) return Feed::kMore;
    bad = TakeLine(reading, collector.line);
    return bad == nullptr ? Feed::kMore : Feed::kDone;
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

// A list has no end of its own, so what is too short is asked for once more.
int ReadWhole(Job& job, Reading& reading) {
  int result = ReadOnce(job, reading);
  if (result != 0 || IsWhole(reading)) return result;
  ShowStatus(job.operation, "The track list did not arrive whole, requesting it once more");
  result = BringToRest(job.link, kBeforeSecond_ms);
  if (result != 0) return result;
  reading.again = true;
  reading.begun = false;
  reading.sums_differ = reading.bent && reading.indices.empty();
  return ReadOnce(job, reading);
}

// Says what is missing of a list that has been read twice.
void ShowGap(const Job& job, const Reading& reading) {
  const auto received = static_cast<uint32_t>(reading.indices.size());
  ShowMessage(job.operation,
              FormatCountMessage("% flights announced, % received", reading.announced, received),
              kTitle);
}

}  // namespace

int ReadTrackList(Job& job, const ProductData& product) {
  // The caller knows whether it can do without the list, so nothing is shown here.
  const TrackListGate gate = GateOf(product.device_name, product.software);
  if (gate != TrackListGate::kOpen) {
    return gate == TrackListGate::kOldSoftware ? kNoTrackList : kUnknownModel;
  }
  Reading reading;
  const int received = ReadWhole(job, reading);
  if (received != 0) return received;
  if (reading.indices.empty()) {
    // An empty memory says nothing, and neither does an instrument that does not hear.
    ShowMessage(job.operation,
                "The instrument has sent no track list: its memory is empty, or it did not "
                "answer\nIs it in its main menu? Switch it off and on, then try again",
                kTitle);
    return -1;
  }
  job.data.list_is_whole = IsWhole(reading);
  if (!job.data.list_is_whole) ShowGap(job, reading);
  for (TrackListEntry& slot : reading.slots) {
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
  if (identified != 0) return identified;
  const int listed = ReadTrackList(job, product);
  return job.data.list_is_whole ? listed : -1;
}

}  // namespace skyhaul::flytec
