#include "formats/igc/mend_flight.h"

#include <algorithm>
#include <optional>

#include "core/text/digits.h"
#include "core/time_scale.h"
#include "formats/igc/fields.h"
#include "formats/igc/flyable.h"
#include "formats/igc/records.h"

namespace skyhaul::igc {

namespace {

constexpr std::string_view kOwnARecord = "AXSH000 repaired";
// Beyond it what is left says more about the damage than about the flight.
constexpr size_t kWorstShare = 5;  // one of so many fixes may be damaged
// Too few lines to tell which length is the usual one.
constexpr size_t kFewestForLength = 10;

struct KeptLine {
  std::string_view text;
  uint32_t number = 0;
  bool is_fix = false;  // the next one of Draft::fixes
};

struct DraftFix {
  uint32_t line = 0;
  size_t length = 0;  // without blanks at the end
  TimedFix timed;
  std::optional<RepairKind> left_out = {};
};

// A flight while its lines are looked at.
struct Draft {
  std::vector<KeptLine> kept;
  std::vector<DraftFix> fixes;
  Repairs repairs;
  size_t bad_fixes = 0;
  std::string_view a_record = {};
  uint32_t a_line = 0;
  uint32_t date = 0;
  std::string date_record = {};  // in the usual form, when the file's is not
  bool has_i_record = false;
  ExtensionColumns fraction = {};
};

void Keep(Draft& draft, const FileLine& line) {
  draft.kept.push_back({.text = line.text, .number = line.number});
}

// "AXSH000 free text"
void TakeARecord(Draft& draft, const FileLine& line) {
  RecorderId id;
  if (ReadRecorderId(UsefulContent(line), id) != RecorderIdFault::kNone) {
    return NoteRepair(draft.repairs, RepairKind::kBadARecord, line.number);
  }
  if (draft.a_line != 0 || !draft.fixes.empty()) {
    return NoteRepair(draft.repairs, RepairKind::kStrayARecord, line.number);
  }
  draft.a_record = line.text;
  draft.a_line = line.number;
  if (draft.date != 0 || draft.kept.empty()) return;
  // What stands before an A record without a date is a mail's heading or the like.
  NoteRepair(draft.repairs, RepairKind::kBeforeStart, draft.kept.front().number, draft.kept.size());
  draft.kept.clear();
  draft.has_i_record = false;
  draft.fraction = {};
}

void TakeDate(Draft& draft, const FileLine& line) {
  const uint32_t date = ReadAnyDate(UsefulContent(line));
  if (date == 0) return NoteRepair(draft.repairs, RepairKind::kBadDate, line.number);
  // A second form of the same date, or the new one after midnight, which the times tell as well.
  if (draft.date != 0) return NoteRepair(draft.repairs, RepairKind::kDateAgain, line.number);
  draft.date = date;
  Keep(draft, line);
  if (ReadDateRecord(UsefulContent(line)) != 0) return;
  NoteRepair(draft.repairs, RepairKind::kDateForm, line.number);
  const CalendarTime day = CalendarFromTime(date);
  draft.date_record = "HFDTE" + PaddedNumber(static_cast<uint64_t>(day.day), 2) +
                      PaddedNumber(static_cast<uint64_t>(day.month), 2) +
                      PaddedNumber(static_cast<uint64_t>(day.year % 100), 2);
  draft.kept.back().text = draft.date_record;
}

void TakeIRecord(Draft& draft, const FileLine& line) {
  if (draft.has_i_record) return NoteRepair(draft.repairs, RepairKind::kIRecordAgain, line.number);
  ExtensionColumns fraction;
  if (!ReadExtensionRecord(UsefulContent(line), fraction)) {
    return NoteRepair(draft.repairs, RepairKind::kBadIRecord, line.number);
  }
  draft.has_i_record = true;
  draft.fraction = fraction;
  Keep(draft, line);
}

void TakeFix(Draft& draft, const FileLine& line) {
  if (draft.date == 0) {
    ++draft.bad_fixes;
    return NoteRepair(draft.repairs, RepairKind::kNoDateYet, line.number);
  }
  DraftFix fix = {.line = line.number, .length = line.text.find_last_not_of(' ') + 1};
  const int time_s = ReadFixRecord(UsefulContent(line), draft.fraction, fix.timed.point);
  if (time_s < 0) {
    ++draft.bad_fixes;
    return NoteRepair(draft.repairs, line.ended ? RepairKind::kBadFix : RepairKind::kCutLine,
                      line.number);
  }
  fix.timed.time_of_day_s = static_cast<uint32_t>(time_s);
  // A record marked V may say no more than the time and the pressure altitude.
  fix.timed.has_place = IsMarkedValid(line.text);
  Keep(draft, line);
  draft.kept.back().is_fix = true;
  draft.fixes.push_back(fix);
}

void TakeLine(Draft& draft, const FileLine& line) {
  const char letter = line.text.front();
  switch (letter) {
    case 'A':
      return TakeARecord(draft, line);
    case 'B':
      return TakeFix(draft, line);
    case 'H':
      return line.text.starts_with("HFDTE") ? TakeDate(draft, line) : Keep(draft, line);
    case 'I':
      return TakeIRecord(draft, line);
    case 'G':
      return;
    default:
      if (letter > 'A' && letter <= 'Z') return Keep(draft, line);
      // A fix whose B was hit is such a line too.
      NoteRepair(draft.repairs, RepairKind::kNotARecord, line.number);
  }
}

void LeaveOut(Draft& draft, DraftFix& fix, RepairKind kind) {
  fix.left_out = kind;
  NoteRepair(draft.repairs, kind, fix.line);
  // Receivers that report twice a second are not damaged.
  if (kind != RepairKind::kRepeatedSecond) ++draft.bad_fixes;
}

// A character that is lost behind the position shifts the altitudes into other good numbers: only
// the length tells.
void LeaveOutOddLengths(Draft& draft, bool last_is_cut) {
  std::vector<size_t> counts;
  for (const DraftFix& fix : draft.fixes) {
    counts.resize(std::max(counts.size(), std::min(fix.length, kMaxLineLength) + 1));
    ++counts[std::min(fix.length, kMaxLineLength)];
  }
  const auto most = std::max_element(counts.begin(), counts.end());
  if (draft.fixes.size() < kFewestForLength || *most * 10 < draft.fixes.size() * 9) return;
  const auto usual = static_cast<size_t>(most - counts.begin());
  for (DraftFix& fix : draft.fixes) {
    if (std::min(fix.length, kMaxLineLength) == usual) continue;
    const bool cut = last_is_cut && &fix == &draft.fixes.back();
    LeaveOut(draft, fix, cut ? RepairKind::kCutLine : RepairKind::kOddLength);
  }
}

void LeaveOutRepeatedSeconds(Draft& draft) {
  const DraftFix* previous = nullptr;
  for (DraftFix& fix : draft.fixes) {
    if (fix.left_out.has_value()) continue;
    if (previous != nullptr && previous->timed.time_of_day_s == fix.timed.time_of_day_s) {
      LeaveOut(draft, fix, RepairKind::kRepeatedSecond);
    } else {
      previous = &fix;
    }
  }
}

void LeaveOutStrangers(Draft& draft) {
  std::vector<TimedFix> timed;
  std::vector<size_t> places;
  for (size_t i = 0; i < draft.fixes.size(); ++i) {
    if (draft.fixes[i].left_out.has_value()) continue;
    timed.push_back(draft.fixes[i].timed);
    places.push_back(i);
  }
  const std::vector<bool> belongs = FindFlight(timed);
  const TimedFix* previous = nullptr;
  for (size_t i = 0; i < timed.size(); ++i) {
    if (belongs[i]) {
      previous = &timed[i];
      continue;
    }
    // The next fix of the flight is mostly the next fix.
    const bool in_time =
        (previous == nullptr || FollowsSoon(timed[i].time_of_day_s, previous->time_of_day_s)) &&
        (i + 1 == timed.size() || FollowsSoon(timed[i + 1].time_of_day_s, timed[i].time_of_day_s));
    LeaveOut(draft, draft.fixes[places[i]],
             in_time ? RepairKind::kNotFlyable : RepairKind::kTimeOrder);
  }
}

void AppendLine(MendedFlight& flight, std::string_view text, uint32_t number) {
  flight.text += text;
  flight.text += "\r\n";
  flight.lines.push_back(number);
}

void WriteLines(const Draft& draft, MendedFlight& flight) {
  // The A record is the first line of an IGC file, wherever it stood.
  AppendLine(flight, draft.a_line != 0 ? draft.a_record : kOwnARecord, draft.a_line);
  size_t fix = 0;
  for (const KeptLine& line : draft.kept) {
    if (line.is_fix && draft.fixes[fix++].left_out.has_value()) continue;
    AppendLine(flight, line.text, line.number);
  }
}

std::string Hopeless(const Draft& draft, size_t left) {
  if (draft.date == 0) return "no date that can be read";
  if (draft.fixes.empty()) return "no fix that can be read";
  const size_t all = left + draft.bad_fixes;
  if (draft.bad_fixes * kWorstShare <= all) return {};
  return std::to_string(draft.bad_fixes) + " of " + std::to_string(all) +
         " fixes are damaged or do not hang together, more than a fifth";
}

size_t CountLeft(const Draft& draft) {
  return static_cast<size_t>(
      std::count_if(draft.fixes.begin(), draft.fixes.end(),
                    [](const DraftFix& fix) { return !fix.left_out.has_value(); }));
}

}  // namespace

uint32_t ReadAnyDate(std::string_view line) {
  // "HFDTE140526", "HFDTEDATE:140526,01", and whatever blanks and colons stand around the key
  line.remove_prefix(5);
  if (line.starts_with("DATE")) line.remove_prefix(4);
  line.remove_prefix(std::min(line.find_first_not_of(" :"), line.size()));
  // A seventh digit: one of them does not belong there, and nothing tells which.
  if (line.size() > 6 && IsDigit(line[6])) return 0;
  return ReadDate(line);
}

std::string MendFlight(std::span<const FileLine> lines, MendedFlight& flight, Repairs& repairs) {
  Draft draft;
  for (const FileLine& line : lines) TakeLine(draft, line);
  LeaveOutOddLengths(draft, !lines.empty() && !lines.back().ended);
  LeaveOutRepeatedSeconds(draft);
  LeaveOutStrangers(draft);
  const size_t left = CountLeft(draft);
  if (std::string reason = Hopeless(draft, left); !reason.empty()) return reason;
  if (draft.a_line == 0) NoteRepair(draft.repairs, RepairKind::kNoARecord, lines.front().number);
  WriteLines(draft, flight);
  // The strict reader has the last word, so that no fix comes from anything but a good line.
  std::string message;
  if (Read(flight.text, flight.points, message, &flight.sources) < 0) return message;
  if (flight.points.size() != left) return "what can be read does not make one flight";
  for (FixSource& source : flight.sources) source.line = flight.lines[source.line - 1];
  MergeRepairs(repairs, draft.repairs);
  return {};
}

}  // namespace skyhaul::igc
