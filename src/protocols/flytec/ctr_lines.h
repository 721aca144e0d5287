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

// Why an airspace cannot be written as sentences, as a message for the person; empty when it can.
// It needs an outline, at most 999 sentences, radii of circles from 1 to 99999 m and a number of
// four digits.
std::string CtrObstacle(const CtrRecord& record);

// The sentences of an airspace without an obstacle, under a name of 17 characters: name and number,
// remark, then one for each point and circle and three for each arc (centre, start, end). Positions
// are rounded to a thousandth of a minute, radii to a metre.
std::vector<CtrLine> CtrLines(const CtrRecord& record, const std::string& name);

}  // namespace skyhaul::flytec
