#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>

namespace skyhaul {

// Times of simulated instruments are nanoseconds on whichever clock their host keeps.
inline constexpr uint64_t kNever_ns = UINT64_MAX;

// What a simulated instrument has put on the wire and its host has not yet delivered: bytes in
// order, each no earlier than the time it was sent for and one byte time after the byte before it.
struct Wire {
  uint32_t baud = 57600;  // 0: no pacing, bytes are due at once
  bool held = false;      // the other side has sent XOFF

  struct Chunk {
    uint64_t not_before_ns = 0;
    std::string bytes;
    size_t taken = 0;
  };
  std::deque<Chunk> chunks;
  uint64_t free_at_ns = 0;  // when the last byte taken has left the wire
};

// Time that one byte of 10 bits takes, in nanoseconds; 0 without pacing.
uint64_t ByteTime_ns(const Wire& wire);

// Queues bytes that start leaving at not_before_ns, after everything queued earlier.
void Send(Wire& wire, std::string_view bytes, uint64_t not_before_ns);

// When the next byte will have arrived at the other side, or kNever_ns when nothing is queued or
// the wire is held.
uint64_t NextArrival_ns(const Wire& wire);

// When the last byte that is queued will have arrived at the other side, provided that nobody holds
// the wire; when nothing is queued, the time of the last byte taken.
uint64_t LastArrival_ns(const Wire& wire);

// Takes at most capacity bytes that have arrived by now_ns. Returns their number.
size_t TakeArrived(Wire& wire, uint64_t now_ns, uint8_t* buffer, size_t capacity);

// Drops what has arrived by now_ns, as a port does that nobody has open. Returns the number of
// bytes.
size_t LoseArrived(Wire& wire, uint64_t now_ns);

}  // namespace skyhaul
