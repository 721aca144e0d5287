// The sentences of an airspace list, one a line: whatever is accepted lies in its range and could
// be uploaded again.

#include "protocols/flytec/ctr_sentence.h"

#include "fuzz/frame.h"
#include "protocols/flytec/ctr_lines.h"
#include "protocols/flytec/field_text.h"

namespace skyhaul {

using namespace flytec;

void Fuzz(std::string_view rest) {
  CtrReceiver receiver;
  int result = 1;
  while (result == 1 && !rest.empty()) {
    result = TakeCtrSentence(receiver, TakeLine(rest));
    Require(result <= 1 && result >= -kCtrTotalChanged);
  }
  if (result < 0 || receiver.next_index != 0) return;
  for (const CtrRecord& record : receiver.airspaces) {
    Require(record.name.size() <= 50 && record.remark.size() <= 50);
    for (const AirspaceSegment& segment : record.segments) {
      Require(std::abs(int64_t{segment.point.lat}) <= 1 << 30);
    }
    if (!CtrObstacle(record).empty()) continue;
    const std::vector<CtrLine> lines = CtrLines(record, FieldText(record.name));
    Require(lines.size() >= 2 + record.segments.size());
    for (const CtrLine& line : lines) Require(line.sentence.ends_with("\r\n"));
  }
}

}  // namespace skyhaul
