#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "formats/igc/flyable.h"
#include "formats/igc/read_igc.h"
#include "formats/igc/records.h"
#include "formats/igc/repairs.h"

namespace skyhaul::igc {

// A line of a damaged file, without its line end.
struct FileLine {
  std::string_view text;
  uint32_t number = 0;  // counted from 1
  bool ended = true;    // false: the file ends with it, without a line end
};

// What is left of a line for reading it, as the strict reader sees it.
inline std::string_view UsefulContent(const FileLine& line) {
  return line.text.substr(0, kMaxLineLength);
}

// The date of a line that begins with "HFDTE", in the format's forms or others that are as clear
// ("HFDTE 140526", "HFDTE:140526,01"): its midnight, or 0.
uint32_t ReadAnyDate(std::string_view line);

// Whether a line that is no B record is or holds a fix all the same: its B was bent or lost, or it
// stands behind a line whose line end was lost.
bool HidesFix(const FileLine& line);

struct KeptLine {
  std::string_view text;
  uint32_t number = 0;
  bool is_fix = false;  // the next one of FlightDraft::fixes
};

struct DraftFix {
  uint32_t line = 0;
  size_t length = 0;  // without blanks at the end
  TimedFix timed;
  std::optional<RepairKind> left_out = {};
};

// A flight while its lines are looked at. Texts of kept lines may point into it: it is not copied.
struct FlightDraft {
  std::vector<KeptLine> kept;
  std::vector<DraftFix> fixes;
  Repairs repairs;
  size_t bad_fixes = 0;
  std::string_view a_record = {};
  uint32_t a_line = 0;
  uint32_t date = 0;
  std::string date_record = {};  // in the usual form, when the file's is not
  bool has_i_record = false;
  std::string i_record = {};  // shortened, when the file's is too long
  ExtensionColumns fraction = {};
};

// Takes the next line of the flight into the draft, or notes why it is left out. Each line is
// looked at by itself.
void TakeLine(FlightDraft& draft, const FileLine& line);

}  // namespace skyhaul::igc
