#include "instruments/wire.h"

#include <algorithm>
#include <array>

namespace skyhaul {

uint64_t ByteTime_ns(const Wire& wire) {
  constexpr uint64_t kBitsPerByte_ns = 10'000'000'000;  // start bit, 8 data bits, stop bit
  return wire.baud == 0 ? 0 : kBitsPerByte_ns / wire.baud;
}

void Send(Wire& wire, std::string_view bytes, uint64_t not_before_ns) {
  // An empty chunk would never be taken from the queue, because it has no last byte.
  if (bytes.empty()) return;
  wire.chunks.push_back({.not_before_ns = not_before_ns, .bytes = std::string(bytes)});
}

uint64_t NextArrival_ns(const Wire& wire) {
  if (wire.held || wire.chunks.empty()) return kNever_ns;
  // A byte has arrived when its stop bit has: one byte time after the line was free for it.
  return std::max(wire.chunks.front().not_before_ns, wire.free_at_ns) + ByteTime_ns(wire);
}

uint64_t LastArrival_ns(const Wire& wire) {
  uint64_t free_at_ns = wire.free_at_ns;
  for (const Wire::Chunk& chunk : wire.chunks) {
    const uint64_t length_ns = (chunk.bytes.size() - chunk.taken) * ByteTime_ns(wire);
    free_at_ns = std::max(chunk.not_before_ns, free_at_ns) + length_ns;
  }
  return free_at_ns;
}

size_t TakeArrived(Wire& wire, uint64_t now_ns, uint8_t* buffer, size_t capacity) {
  size_t count = 0;
  while (count < capacity && NextArrival_ns(wire) <= now_ns) {
    // A read that comes late still finds the bytes at their own times, so pacing does not add up
    // delays.
    wire.free_at_ns = NextArrival_ns(wire);
    Wire::Chunk& chunk = wire.chunks.front();
    buffer[count++] = static_cast<uint8_t>(chunk.bytes[chunk.taken++]);
    if (chunk.taken == chunk.bytes.size()) wire.chunks.pop_front();
  }
  return count;
}

size_t LoseArrived(Wire& wire, uint64_t now_ns) {
  std::array<uint8_t, 256> buffer;
  size_t lost = 0;
  for (;;) {
    const size_t count = TakeArrived(wire, now_ns, buffer.data(), buffer.size());
    if (count == 0) return lost;
    lost += count;
  }
}

}  // namespace skyhaul
