#include <gtest/gtest.h>

#include "instruments/wire.h"

namespace skyhaul {
namespace {

constexpr uint64_t kByte_ns = 173'611;  // 10 bits at 57600 baud

// Takes what has arrived, as far as it fits into three bytes.
std::string Take(Wire& wire, uint64_t now_ns) {
  uint8_t buffer[3];
  const size_t count = TakeArrived(wire, now_ns, buffer, sizeof buffer);
  return {buffer, buffer + count};
}

TEST(Wire, LaterBytesWaitForEarlierOnesAndForTheirTime) {
  Wire wire;
  Send(wire, "ab", 0);
  Send(wire, "c", 0);
  Send(wire, "d", 10 * kByte_ns);
  EXPECT_EQ(Take(wire, 3 * kByte_ns), "abc");
  EXPECT_EQ(NextArrival_ns(wire), 11 * kByte_ns);
  Send(wire, "efg", 10 * kByte_ns);
  EXPECT_EQ(Take(wire, 20 * kByte_ns), "def");
  EXPECT_EQ(Take(wire, 20 * kByte_ns), "g");
  EXPECT_EQ(NextArrival_ns(wire), kNever_ns);
}

}  // namespace
}  // namespace skyhaul
