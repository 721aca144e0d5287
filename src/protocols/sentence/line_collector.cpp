#include "protocols/sentence/line_collector.h"

namespace skyhaul {

bool CollectLineByte(LineCollector& collector, uint8_t byte) {
  if (!collector.started) {
    if (byte != '$') return false;
    collector.started = true;
    collector.ended = false;
    collector.line = "$";
    return false;
  }
  if (byte == '\n') {
    collector.started = false;
    return true;
  }
  // Between CR and LF nothing belongs to the line. A line may also end with LF alone.
  if (byte == '\r') collector.ended = true;
  if (!collector.ended && collector.line.size() < collector.limit) {
    collector.line += static_cast<char>(byte);
  }
  return false;
}

}  // namespace skyhaul
