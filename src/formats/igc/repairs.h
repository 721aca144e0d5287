#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace skyhaul::igc {

// What the lenient reader does to a file, in the order in which it is told.
enum class RepairKind {
  kByteOrderMark,
  kEndMark,
  kLoneCr,
  kBeforeStart,
  kNoARecord,
  kBadARecord,
  kStrayARecord,
  kMovedARecord,
  kNotARecord,
  kBadDate,
  kDateForm,
  kDateAgain,
  kBadIRecord,
  kLongIRecord,
  kIRecordAgain,
  kCutLine,
  kBadFix,
  kOddLength,
  kNoDateYet,
  kRepeatedSecond,
  kTimeOrder,
  kNotFlyable,
};

struct Repair {
  RepairKind kind = RepairKind::kBadFix;
  size_t count = 0;         // lines
  uint32_t first_line = 0;  // of the file, counted from 1
};

// One row for each kind that occurred, in order of the kinds.
using Repairs = std::vector<Repair>;

void NoteRepair(Repairs& repairs, RepairKind kind, uint32_t line, size_t count = 1);

// Adds the rows of one list to another.
void MergeRepairs(Repairs& repairs, const Repairs& more);

// How many lines of the file were left out.
size_t LinesLeftOut(const Repairs& repairs);

// "1 line left out", "3 lines left out".
std::string LeftOutText(size_t lines);

// "Line 12: a fix that cannot be read; left out", or "3 lines, the first is line 12: ...".
std::string RepairText(const Repair& repair);

// One word for programs: "bad_fix".
std::string_view RepairKey(RepairKind kind);

}  // namespace skyhaul::igc
