#include "formats/igc/flight_draft.h"

#include <algorithm>

#include "core/text/digits.h"
#include "core/time_scale.h"
#include "formats/igc/fields.h"

namespace skyhaul::igc {

namespace {

void Keep(FlightDraft& draft, const FileLine& line) {
  draft.kept.push_back({.text = line.text, .number = line.number});
}

void LoseFix(FlightDraft& draft, const FileLine& line, RepairKind kind) {
  ++draft.bad_fixes;
  NoteRepair(draft.repairs, kind, line.number);
}

// Whether a text is a whole fix but for its first letter.
bool ReadsAsFix(std::string_view text) {
  TrackPoint point;
  return ReadFixRecord(text, {}, point) >= 0;
}

// "AXSH000 free text"
void TakeARecord(FlightDraft& draft, const FileLine& line) {
  RecorderId id;
  if (ReadRecorderId(UsefulContent(line), id) != RecorderIdFault::kNone) {
    return NoteRepair(draft.repairs, RepairKind::kBadARecord, line.number);
  }
  if (draft.a_line != 0 || !draft.fixes.empty()) {
    return NoteRepair(draft.repairs, RepairKind::kStrayARecord, line.number);
  }
  draft.a_record = line.text;
  draft.a_line = line.number;
  if (draft.kept.empty()) return;
  // Behind a date it belongs to the flight all the same.
  if (draft.date != 0) return NoteRepair(draft.repairs, RepairKind::kMovedARecord, line.number);
  // What stands before an A record without a date is a mail's heading or the like.
  NoteRepair(draft.repairs, RepairKind::kBeforeStart, draft.kept.front().number, draft.kept.size());
  draft.kept.clear();
  draft.has_i_record = false;
  draft.fraction = {};
}

void TakeDate(FlightDraft& draft, const FileLine& line) {
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

void TakeIRecord(FlightDraft& draft, const FileLine& line) {
  if (draft.has_i_record) return NoteRepair(draft.repairs, RepairKind::kIRecordAgain, line.number);
  ExtensionColumns fraction;
  if (!ReadExtensionRecord(line.text, fraction)) {
    return NoteRepair(draft.repairs, RepairKind::kBadIRecord, line.number);
  }
  draft.has_i_record = true;
  draft.fraction = fraction;
  Keep(draft, line);
  // Too long for the strict reader only when entries stand past the columns that count.
  ExtensionColumns ignored;
  if (ReadExtensionRecord(UsefulContent(line), ignored)) return;
  NoteRepair(draft.repairs, RepairKind::kLongIRecord, line.number);
  draft.i_record = ShortenExtensionRecord(line.text, kMaxLineLength);
  draft.kept.back().text = draft.i_record;
}

// The mark and everything behind it is what a recorder can have written: "A0012300456", digits,
// signs and letters. Other bent characters of the extensions cannot be told.
bool IsPlausible(std::string_view fix) {
  const char mark = fix[kValidityColumn];
  return (mark == 'A' || mark == 'V') &&
         std::all_of(fix.begin(), fix.end(), [](char c) { return c >= ' ' && c <= '~'; });
}

void TakeFix(FlightDraft& draft, const FileLine& line) {
  if (draft.date == 0) return LoseFix(draft, line, RepairKind::kNoDateYet);
  DraftFix fix = {.line = line.number, .length = line.text.find_last_not_of(' ') + 1};
  const int time_s = ReadFixRecord(UsefulContent(line), draft.fraction, fix.timed.point);
  if (time_s < 0 || !IsPlausible(line.text)) {
    return LoseFix(draft, line, line.ended ? RepairKind::kBadFix : RepairKind::kCutLine);
  }
  fix.timed.time_of_day_s = static_cast<uint32_t>(time_s);
  // A record marked V may say no more than the time and the pressure altitude.
  fix.timed.has_place = IsMarkedValid(line.text);
  Keep(draft, line);
  draft.kept.back().is_fix = true;
  draft.fixes.push_back(fix);
}

void TakeOther(FlightDraft& draft, const FileLine& line) {
  const char letter = line.text.front();
  if (letter > 'A' && letter <= 'Z') return Keep(draft, line);
  NoteRepair(draft.repairs, RepairKind::kNotARecord, line.number);
  // As long as a fix, it may have been one, hit more than once.
  if (line.text.size() + 1 >= kBRecordLength) ++draft.bad_fixes;
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

bool HidesFix(const FileLine& line) {
  const std::string_view text = line.text;
  // "C1200004707500N01130001EA0012300456", or without its first letter
  if (ReadsAsFix(text) || ReadsAsFix("B" + std::string(text.substr(0, kBRecordLength))))
    return true;
  // "HFDTM100GPSDATUM: WGS-84B1200004707500N01130001EA0012300456"
  for (size_t at = text.find('B'); at != text.npos; at = text.find('B', at + 1)) {
    if (ReadsAsFix(text.substr(at))) return true;
  }
  return false;
}

void TakeLine(FlightDraft& draft, const FileLine& line) {
  const char letter = line.text.front();
  if (letter == 'B') return TakeFix(draft, line);
  const bool is_date = line.text.starts_with("HFDTE");
  if (HidesFix(line)) {
    LoseFix(draft, line, RepairKind::kBadFix);
    // The flight needs its date, which stands in front of what is lost.
    if (!is_date) return;
  }
  if (is_date) return TakeDate(draft, line);
  switch (letter) {
    case 'A':
      return TakeARecord(draft, line);
    case 'I':
      return TakeIRecord(draft, line);
    // It fits the whole file only.
    case 'G':
      return;
    default:
      return TakeOther(draft, line);
  }
}

}  // namespace skyhaul::igc
