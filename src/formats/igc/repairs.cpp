#include "formats/igc/repairs.h"

#include <algorithm>

namespace skyhaul::igc {

namespace {

struct KindRow {
  RepairKind kind;
  std::string_view key;
  std::string_view text;
  bool leaves_out = true;  // a line of the file is not in the repaired one
};

constexpr KindRow kKinds[] = {
    {RepairKind::kByteOrderMark, "byte_order_mark", "a byte order mark; left out", false},
    {RepairKind::kEndMark, "end_mark", "an end mark of DOS (0x1A); left out", false},
    {RepairKind::kLoneCr, "cr_line_end", "ended by CR alone", false},
    {RepairKind::kBeforeStart, "before_start", "in front of the A record; left out"},
    {RepairKind::kNoARecord, "no_a_record", "no A record begins the flight", false},
    {RepairKind::kBadARecord, "bad_a_record", "an A record that cannot be read; left out"},
    {RepairKind::kStrayARecord, "stray_a_record", "an A record that begins no flight; left out"},
    {RepairKind::kMovedARecord, "moved_a_record", "an A record behind other lines; written first",
     false},
    {RepairKind::kNotARecord, "not_a_record", "no record of an IGC file; left out"},
    {RepairKind::kBadDate, "bad_date", "a date that cannot be read; left out"},
    {RepairKind::kDateForm, "date_form", "a date in an unusual form; written in the usual one",
     false},
    {RepairKind::kDateAgain, "date_again", "a further date of the same flight; left out"},
    {RepairKind::kBadIRecord, "bad_i_record",
     "an I record that is damaged; left out, fractions of seconds are unknown"},
    {RepairKind::kLongIRecord, "long_i_record",
     "an I record that is too long; written with the entries that fit", false},
    {RepairKind::kIRecordAgain, "i_record_again", "a further I record; left out"},
    {RepairKind::kCutLine, "cut_line", "the last line is cut; left out"},
    {RepairKind::kBadFix, "bad_fix", "a fix that cannot be read; left out"},
    {RepairKind::kOddLength, "odd_length", "a fix that has lost or gained characters; left out"},
    {RepairKind::kNoDateYet, "fix_before_date", "a fix before the date; left out"},
    {RepairKind::kRepeatedSecond, "repeated_second", "the second of the fix before; left out"},
    {RepairKind::kTimeOrder, "time_order", "a fix out of the order of time; left out"},
    {RepairKind::kNotFlyable, "not_flyable", "a fix that cannot be flown to and from; left out"},
};

const KindRow& RowOf(RepairKind kind) {
  return kKinds[static_cast<size_t>(kind)];
}

// The table is indexed by the kind.
static_assert([] {
  for (size_t i = 0; i < std::size(kKinds); ++i) {
    if (kKinds[i].kind != static_cast<RepairKind>(i)) return false;
  }
  return kKinds[std::size(kKinds) - 1].kind == RepairKind::kNotFlyable;
}());

}  // namespace

void NoteRepair(Repairs& repairs, RepairKind kind, uint32_t line, size_t count) {
  if (count == 0) return;
  const auto place = std::lower_bound(repairs.begin(), repairs.end(), kind,
                                      [](const Repair& a, RepairKind b) { return a.kind < b; });
  if (place == repairs.end() || place->kind != kind) {
    repairs.insert(place, {.kind = kind, .count = count, .first_line = line});
    return;
  }
  place->count += count;
  // Damage is found in several passes, so a later one may be further up.
  place->first_line = std::min(place->first_line, line);
}

void MergeRepairs(Repairs& repairs, const Repairs& more) {
  for (const Repair& repair : more) {
    NoteRepair(repairs, repair.kind, repair.first_line, repair.count);
  }
}

size_t LinesLeftOut(const Repairs& repairs) {
  size_t lines = 0;
  for (const Repair& repair : repairs) {
    if (RowOf(repair.kind).leaves_out) lines += repair.count;
  }
  return lines;
}

std::string LeftOutText(size_t lines) {
  return std::to_string(lines) + (lines == 1 ? " line left out" : " lines left out");
}

std::string RepairText(const Repair& repair) {
  const std::string line = std::to_string(repair.first_line);
  const std::string text(RowOf(repair.kind).text);
  if (repair.count == 1) return "Line " + line + ": " + text;
  return std::to_string(repair.count) + " lines, the first is line " + line + ": " + text;
}

std::string_view RepairKey(RepairKind kind) {
  return RowOf(kind).key;
}

}  // namespace skyhaul::igc
