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
// A recorder that goes on sooner has not begun another flight without an A record.
constexpr uint32_t kSameFlightGap_s = 3600;
// Ends a text file in DOS, and stands between two files that were copied into one.
constexpr char kDosEndMark = '\x1A';

// Takes a line end: LF, CR LF, or CRs alone, each of which ends a line. Several CRs before an LF
// are one line end, which some transfers make of CR LF. Returns how many lines end.
uint32_t TakeLineEnd(std::string_view& text, bool& alone) {
  const size_t other = std::min(text.find_first_not_of('\r'), text.size());
  alone = other == text.size() || text[other] != '\n';
  text.remove_prefix(alone ? other : other + 1);
  return alone ? static_cast<uint32_t>(other) : 1;
}

void AddLine(std::vector<FileLine>& lines, FileLine line, Repairs& repairs) {
  const size_t start = std::min(line.text.find_first_not_of(kDosEndMark), line.text.size());
  if (start > 0) NoteRepair(repairs, RepairKind::kEndMark, line.number);
  line.text.remove_prefix(start);
  if (!line.text.empty()) lines.push_back(line);
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
    AddLine(lines, {.text = text.substr(0, end), .number = number, .ended = ended}, repairs);
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

// Header records between two fixes, where a flight may begin whose A record is lost.
struct LateHeader {
  size_t place = 0;       // of the first of them
  bool has_date = false;  // whatever it is
  bool is_head = false;   // records that stand at the head of a flight only
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
  std::optional<LateHeader> late_header = {};
  std::string contradiction = {};
};

void Begin(FlightSearch& search, size_t place, uint32_t date, bool has_a_record) {
  search.starts.push_back(place);
  search.has_a_record = has_a_record;
  search.has_fix = false;
  search.date = date;
  search.perhaps_start.reset();
  search.late_date.reset();
  search.late_header.reset();
}

void Contradict(FlightSearch& search, std::string_view what, size_t place) {
  search.contradiction = "the " + std::string(what) + " on line " +
                         std::to_string(search.lines[place].number) +
                         " contradicts what stands before it";
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
    Contradict(search, "date", place);
  } else {
    search.late_date = LateDate{.place = place, .date = date};
  }
}

// Header records that a recorder writes into a running flight are not told from a new flight's by
// themselves: the pilot and the recorder's kind stand at the head only, and so does an I record
// that follows a date.
void SeeHeader(FlightSearch& search, size_t place) {
  const std::string_view line = search.lines[place].text;
  const bool is_date = line.starts_with("HFDTE");
  if (search.has_fix) {
    if (!search.late_header) search.late_header = LateHeader{.place = place};
    LateHeader& header = *search.late_header;
    header.has_date = header.has_date || is_date;
    header.is_head = header.is_head || line.starts_with("HFPLT") || line.starts_with("HFFTY") ||
                     (line.front() == 'I' && header.has_date);
  }
  if (is_date) SeeDate(search, place);
}

// Decides at a fix what the header records in front of it were.
void DecideLateHeader(FlightSearch& search, uint32_t time_of_day_s) {
  const uint32_t gap_s =
      (time_of_day_s + kSecondsPerDay - search.last_time_of_day_s) % kSecondsPerDay;
  const std::optional<LateDate> late = search.late_date;
  const LateHeader header = *search.late_header;
  search.late_date.reset();
  search.late_header.reset();
  const bool next_day = late && late->date == search.date + kSecondsPerDay;
  const bool paused = gap_s >= kSameFlightGap_s;
  if (!header.is_head && (!late || (next_day && !paused))) return;
  if (paused) return Begin(search, header.place, late ? late->date : search.date, false);
  Contradict(search, late ? "date" : "header", late ? late->place : header.place);
}

void SeeFix(FlightSearch& search, size_t place) {
  // Another letter's damage made it an A: no header has followed.
  search.perhaps_start.reset();
  TrackPoint point;
  const int time_s = ReadFixRecord(UsefulContent(search.lines[place]), {}, point);
  if (time_s < 0) return;
  const auto time_of_day_s = static_cast<uint32_t>(time_s);
  if (search.late_header) DecideLateHeader(search, time_of_day_s);
  search.last_time_of_day_s = time_of_day_s;
  search.has_fix = true;
}

void SeeLine(FlightSearch& search, size_t place) {
  const FileLine& line = search.lines[place];
  const char letter = line.text.front();
  if (letter == 'B') return SeeFix(search, place);
  if (letter != 'A' && letter != 'H' && letter != 'I') return;
  // A bent B, or a header record that has swallowed a fix; its date is needed all the same.
  if (HidesFix(line) && !line.text.starts_with("HFDTE")) return;
  if (letter == 'A') return SeeARecord(search, place);
  if (search.perhaps_start) Begin(search, *search.perhaps_start, 0, true);
  SeeHeader(search, place);
}

// Mends each flight; those that cannot be mended are named. What was done to the file counts for
// the first one.
void MendFlights(const FlightSearch& search, LenientFile& file, std::string& first_reason) {
  Repairs of_file = std::move(file.repairs);
  file.repairs.clear();
  for (size_t i = 0; i < search.starts.size(); ++i) {
    const size_t begin = search.starts[i];
    const size_t end = i + 1 < search.starts.size() ? search.starts[i + 1] : search.lines.size();
    MendedFlight flight = {.repairs = std::exchange(of_file, {})};
    std::string reason = MendFlight(search.lines.subspan(begin, end - begin), flight);
    MergeRepairs(file.repairs, flight.repairs);
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
