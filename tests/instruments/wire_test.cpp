#include "instruments/wire.h"

#include <gtest/gtest.h>

namespace skyhaul {
namespace {

constexpr uint64_t kByte_ns = 173'611;  // 10 bits at 57600 baud

std::string Take(Wire& wire, uint64_t now_ns) {
  uint8_t buffer[64];
  const size_t count = TakeArrived(wire, now_ns, buffer, sizeof buffer);
  return {buffer, buffer + count};
}

TEST(Wire, BytesArriveOneByteTimeAfterAnother) {
  Wire wire;
  EXPECT_EQ(NextArrival_ns(wire), kNever_ns);
  Send(wire, "abc", 1000);
  EXPECT_EQ(NextArrival_ns(wire), 1000 + kByte_ns);
  EXPECT_EQ(Take(wire, 1000 + kByte_ns - 1), "");
  EXPECT_EQ(Take(wire, 1000 + kByte_ns), "a");
  EXPECT_EQ(Take(wire, 1000 + 3 * kByte_ns - 1), "b");
  EXPECT_EQ(Take(wire, 1000 + 3 * kByte_ns), "c");
  EXPECT_EQ(NextArrival_ns(wire), kNever_ns);
}

TEST(Wire, LaterBytesWaitForEarlierOnesAndForTheirTime) {
  Wire wire;
  Send(wire, "ab", 0);
  Send(wire, "c", 0);
  Send(wire, "d", 10 * kByte_ns);
  EXPECT_EQ(Take(wire, 3 * kByte_ns), "abc");
  EXPECT_EQ(NextArrival_ns(wire), 11 * kByte_ns);
}

TEST(Wire, TakesNoMoreThanThereIsRoomFor) {
  Wire wire;
  wire.baud = 0;
  Send(wire, "abc", 0);
  uint8_t buffer[2];
  EXPECT_EQ(TakeArrived(wire, 0, buffer, sizeof buffer), 2U);
  EXPECT_EQ(Take(wire, 0), "c");
}

TEST(Wire, NothingArrivesWhileHeld) {
  Wire wire;
  wire.baud = 0;
  wire.held = true;
  Send(wire, "abc", 0);
  EXPECT_EQ(NextArrival_ns(wire), kNever_ns);
  EXPECT_EQ(Take(wire, 1'000'000'000), "");
  wire.held = false;
  EXPECT_EQ(Take(wire, 1'000'000'000), "abc");
}

}  // namespace
}  // namespace skyhaul
