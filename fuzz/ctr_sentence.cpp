// The sentences of an airspace list, one a line: whatever is accepted lies in its range and could
// be uploaded again.

#include "protocols/flytec/ctr_sentence.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "protocols/flytec/ctr_lines.h"
#include "protocols/flytec/field_text.h"

namespace {

void Require(bool holds) {
  if (!holds) __builtin_trap();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace skyhaul;
  using namespace skyhaul::flytec;
  std::string_view rest(reinterpret_cast<const char*>(data), size);
  CtrReceiver receiver;
  int result = 1;
  while (result == 1 && !rest.empty()) {
    const size_t end = std::min(rest.find('\n'), rest.size());
    result = TakeCtrSentence(receiver, rest.substr(0, end));
    Require(result <= 1 && result >= -kCtrTotalChanged);
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  if (result < 0 || receiver.next_index != 0) return 0;
  for (const CtrRecord& record : receiver.airspaces) {
    Require(record.name.size() <= 50 && record.remark.size() <= 50);
    for (const AirspaceSegment& segment : record.segments) {
      Require(segment.point.lat >= -(1 << 30) && segment.point.lat <= 1 << 30);
    }
    if (!CtrObstacle(record).empty()) continue;
    const std::vector<CtrLine> lines = CtrLines(record, FieldText(record.name));
    Require(lines.size() >= 2 + record.segments.size());
    for (const CtrLine& line : lines) Require(line.sentence.ends_with("\r\n"));
  }
  return 0;
}
