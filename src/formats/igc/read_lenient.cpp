#include "formats/igc/read_lenient.h"

#include <algorithm>
#include <optional>
#include <span>
#include <utility>

#include "core/text/digits.h"
#include "core/time_scale.h"
#include "formats/igc/fields.h"
#include "formats/igc/records.h"

namespace skyhaul::igc {

namespace {

// As much as a flight from an instrument may have.
constexpr size_t kMaxLength = size_t{64} << 20;
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
// A date that departs from the times by more than this and less than a night is a new flight's.
constexpr uint32_t kSameFlightGap_s = 3600;
// A recorder that goes on within a minute has not begun another flight.
constexpr uint32_t kNoPause_s = 60;

// Takes a line end: LF, CR LF, or CRs alone, each of which ends a line. Several CRs before an LF
// are one line end, which some transfers make of CR LF. Returns how many lines end.
uint32_t TakeLineEnd(std::string_view& text, bool& alone) {
  const size_t other = std::min(text.find_first_not_of('\r'), text.size());
  alone = other == text.size() || text[other] != '\n';
  text.remove_prefix(alone ? other : other + 1);
  return alone ? static_cast<uint32_t>(other) : 1;
}

// Lines that hold something.
std::vector<FileLine> SplitLines(std::string_view text, Repairs& repairs) {
  std::vector<FileLine> lines;
  uint32_t number = 1;
  if (text.starts_with(kByteOrderMark)) {
    NoteRepair(repairs, RepairKind::kByteOrderMark, number);
    text.remove_prefix(kByteOrderMark.size());
  }
  while (!text.empty()) {
    const size_t end = std::min(text.find_first_of("\r\n"), text.size());
    const bool ended = end < text.size();
    if (end > 0) lines.push_back({.text = text.substr(0, end), .number = number, .ended = ended});
    text.remove_prefix(end);
    if (!ended) break;
    bool alone = false;
    const uint32_t count = TakeLineEnd(text, alone);
    if (alone) NoteRepair(repairs, RepairKind::kLoneCr, number, count);
    number += count;
  }
  // Strictly the A record is the first line, so that a blank one in front of it counts.
  const uint32_t blank = lines.empty() ? 0 : lines.front().number - 1;
  NoteRepair(repairs, RepairKind::kBeforeStart, 1, blank);
  return lines;
}

struct LateDate {
  size_t place = 0;  // in the lines
  uint32_t date = 0;
};

// Finds where flights begin. What may begin one is only known for sure some lines later.
struct FlightSearch {
  std::span<const FileLine> lines;
  std::vector<size_t> starts = {0};
  bool has_a_record = false;
  bool has_fix = false;
  uint32_t date = 0;
  uint32_t last_time_of_day_s = 0;
  std::optional<size_t> perhaps_start = {};  // an A record behind fixes or a date
  std::optional<LateDate> late_date = {};    // another date than the flight's
  std::string contradiction = {};
};

void Begin(FlightSearch& search, size_t place, uint32_t date, bool has_a_record) {
  search.starts.push_back(place);
  search.has_a_record = has_a_record;
  search.has_fix = false;
  search.date = date;
  search.perhaps_start.reset();
  search.late_date.reset();
}

void Contradict(FlightSearch& search, size_t place) {
  search.contradiction = "the date on line " + std::to_string(search.lines[place].number) +
                         " contradicts the one before";
}

void SeeARecord(FlightSearch& search, size_t place) {
  RecorderId id;
  if (ReadRecorderId(UsefulContent(search.lines[place]), id) != RecorderIdFault::kNone) return;
  const bool later = search.has_fix || (search.has_a_record && search.date != 0);
  if (!later) {
    search.has_a_record = true;
  } else if (!search.perhaps_start.has_value()) {
    search.perhaps_start = place;
  }
}

void SeeDate(FlightSearch& search, size_t place) {
  const uint32_t date = ReadAnyDate(UsefulContent(search.lines[place]));
  if (date == 0 || date == search.date) return;
  if (search.date == 0) {
    search.date = date;
  } else if (!search.has_fix || (search.late_date && search.late_date->date != date)) {
    // Two dates and nothing that tells which of them is damaged.
    Contradict(search, place);
  } else {
    search.late_date = LateDate{.place = place, .date = date};
  }
}

void SeeFix(FlightSearch& search, size_t place) {
  // Another letter's damage made it an A: no header has followed.
  search.perhaps_start.reset();
  TrackPoint point;
  const int time_s = ReadFixRecord(UsefulContent(search.lines[place]), {}, point);
  if (time_s < 0) return;
  const auto time_of_day_s = static_cast<uint32_t>(time_s);
  if (search.late_date.has_value()) {
    const LateDate late = *search.late_date;
    const uint32_t gap_s =
        (time_of_day_s + kSecondsPerDay - search.last_time_of_day_s) % kSecondsPerDay;
    search.late_date.reset();
    const bool next_day = late.date == search.date + kSecondsPerDay;
    if (!next_day && gap_s <= kNoPause_s) return Contradict(search, late.place);
    if (!next_day || gap_s > kSameFlightGap_s) Begin(search, late.place, late.date, false);
  }
  search.last_time_of_day_s = time_of_day_s;
  search.has_fix = true;
}

void SeeLine(FlightSearch& search, size_t place) {
  const std::string_view line = search.lines[place].text;
  switch (line.front()) {
    case 'A':
      return SeeARecord(search, place);
    case 'B':
      return SeeFix(search, place);
    case 'H':
    case 'I':
      if (search.perhaps_start.has_value()) Begin(search, *search.perhaps_start, 0, true);
      if (line.starts_with("HFDTE")) SeeDate(search, place);
      return;
    default:
      return;
  }
}

// Mends each flight; those that cannot be mended are named.
void MendFlights(const FlightSearch& search, LenientFile& file, std::string& first_reason) {
  for (size_t i = 0; i < search.starts.size(); ++i) {
    const size_t begin = search.starts[i];
    const size_t end = i + 1 < search.starts.size() ? search.starts[i + 1] : search.lines.size();
    MendedFlight flight;
    std::string reason = MendFlight(search.lines.subspan(begin, end - begin), flight, file.repairs);
    if (reason.empty()) {
      file.flights.push_back(std::move(flight));
      continue;
    }
    file.refused.push_back("The flight from line " + std::to_string(search.lines[begin].number) +
                           " on is left out: " + reason);
    if (first_reason.empty()) first_reason = std::move(reason);
  }
}

}  // namespace

std::string ReadLenient(std::string_view text, LenientFile& file) {
  file = {};
  if (text.size() > kMaxLength) return "it is too long to be repaired";
  const std::vector<FileLine> lines = SplitLines(text, file.repairs);
  if (lines.empty()) return "it holds nothing";
  FlightSearch search = {.lines = lines};
  for (size_t i = 0; i < lines.size(); ++i) {
    SeeLine(search, i);
    if (!search.contradiction.empty()) return search.contradiction;
  }
  std::string reason;
  MendFlights(search, file, reason);
  return file.flights.empty() ? reason : std::string();
}

bool LooksLike(std::string_view text) {
  if (text.find("HFDTE") == text.npos) return false;
  // "B120000", whatever line end stands before it
  for (size_t at = text.find('B'); at != text.npos; at = text.find('B', at + 1)) {
    if (at > 0 && text[at - 1] != '\n' && text[at - 1] != '\r') continue;
    if (at + kLatitudeColumn <= text.size() && ReadTimeOfDay(text.substr(at)) >= 0) return true;
  }
  return false;
}

}  // namespace skyhaul::igc
