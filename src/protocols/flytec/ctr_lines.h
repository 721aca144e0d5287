#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/airspace.h"

namespace skyhaul::flytec {

// One sentence of an airspace on its way to the instrument.
struct CtrLine {
  std::string sentence;   // with checksum, CR and LF
  uint32_t pause_ms = 0;  // after the sentence, while the instrument stores it
  bool ends_segment = false;
};

// What the instruments keep.
inline constexpr uint32_t kCtrRoom = 500;
inline constexpr size_t kCtrElements =
    100;  // of one airspace: a point, a circle, a third of an arc

// The warning distance of an airspace that has none of its own. With 0 no pilot would be warned.
inline constexpr uint32_t kDefaultWarning_m = 2000;

// Why an airspace cannot be written as sentences, as a message for the person; empty when it can.
// It needs an outline of at most 100 elements, radii of circles from 1 to 99999 m and a warning
// distance of four digits.
std::string CtrObstacle(const CtrRecord& record);

// An airspace as the instrument should tell it once it has it, but for the rounding of positions:
// name and remark as their fields hold them, a warning distance, every arc by its points, and class
// and limits as the remark where it has no other.
CtrRecord CtrAsSent(const CtrRecord& record, const std::string& name);

// The sentences of an airspace without an obstacle, under a name of 17 characters: name and warning
// distance, remark, then one for each point and circle and three for each arc (centre, start, end).
// Positions are rounded to a thousandth of a minute, radii to a metre.
std::vector<CtrLine> CtrLines(const CtrRecord& record, const std::string& name);

}  // namespace skyhaul::flytec
