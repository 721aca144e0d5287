#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace skyhaul {

// Collects one line that runs from '$' to CR and is ended by LF. Bytes before the '$' and between
// CR and LF are ignored, and a line longer than the limit is cut: for instruments whose lines carry
// a checksum that nobody verifies.
struct LineCollector {
  size_t limit = 80;
  bool started = false;
  bool ended = false;  // the CR was seen
  std::string line;
};

// Feeds one byte. True when the line is complete; it stays in collector.line until the next byte.
bool CollectLineByte(LineCollector& collector, uint8_t byte);

}  // namespace skyhaul
