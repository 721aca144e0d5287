#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <numeric>
#include <string>

#include "tests/platform/cable.h"

namespace skyhaul {
namespace {

using ::testing::HasSubstr;

TEST_F(SerialPorts, PassesEveryByteUnchangedInBothDirections) {
  const Cable cable;
  const Port port(cable.name);
  std::string all(256, '\0');
  std::iota(all.begin(), all.end(), '\0');
  ASSERT_EQ(port.Write(all), 0);
  EXPECT_EQ(cable.instrument.ReadAll(256), all);
  ASSERT_EQ(cable.instrument.Write(all), 0);
  EXPECT_EQ(port.ReadAll(256), all);
  std::string bytes;
  EXPECT_EQ(port.Read(bytes), 0) << "something was echoed";
}

TEST_F(SerialPorts, AReadEndsWithAFullBufferOrInTime) {
  const Cable cable;
  const Port port(cable.name);
  std::string bytes;
  const uint64_t start_ms = Tick_ms();
  EXPECT_EQ(port.Read(bytes), 0) << "silence is no error";
  EXPECT_GE(Tick_ms() - start_ms, 30U);
  ASSERT_EQ(cable.instrument.Write("abcdefgh"), 0);
  while (bytes.empty() && port.Read(bytes, 3) == 0) {
  }
  EXPECT_LE(bytes.size(), 3U);
  EXPECT_EQ(bytes + port.ReadAll(8 - bytes.size()), "abcdefgh");
}

TEST_F(SerialPorts, ConfiguringThrowsAwayWhatWasReceived) {
  const Cable cable;
  const Port port(cable.name);
  ASSERT_EQ(cable.instrument.Write("old"), 0);
  std::string bytes;
  while (bytes.empty() && port.Read(bytes, 1) == 0) {
  }
  port.Configure({});
  ASSERT_EQ(cable.instrument.Write("new"), 0);
  EXPECT_EQ(port.ReadAll(3), "new");
}

// 100 bytes may take 300 ms at 4800 baud and 200 ms at any other speed.
TEST_F(SerialPorts, AWriteGivesUpInTimeWhenNobodyReads) {
  const Cable cable;
  const Port port(cable.name);
  for (const auto& [baud, patience_ms] : {std::pair{4800U, 280U}, std::pair{9600U, 190U}}) {
    port.Configure({.baud = baud});
    const uint64_t took_ms = port.WriteUntilItFails();
    EXPECT_GE(took_ms, patience_ms);
    EXPECT_LT(took_ms, patience_ms + 2000U);
    cable.instrument.ReadAll(SIZE_MAX, 10);
    EXPECT_EQ(port.Write("after"), 0) << "the port is of no use after a write that failed";
    EXPECT_EQ(cable.instrument.ReadAll(5), "after");
  }
}

TEST_F(SerialPorts, APortIsForOneProgramAlone) {
  const Cable cable;
  Port port(cable.name);
  const PortOpening second = NativePlatform().serial.open(nullptr, cable.name);
  EXPECT_EQ(second.handle, kNoSerialHandle);
  EXPECT_EQ(second.problem, PortProblem::kBusy);
  EXPECT_THAT(second.reason, HasSubstr("Another program is using "));
  port.Close();
  const Port again(cable.name);  // expects to be opened
}

TEST(SerialOpen, RefusesWhatIsNoSerialPort) {
  for (const NoPort& c : NoPorts()) {
    const PortOpening opening = NativePlatform().serial.open(nullptr, c.name);
    EXPECT_EQ(opening.handle, kNoSerialHandle) << c.name;
    EXPECT_EQ(opening.problem, c.problem) << c.name;
    EXPECT_THAT(opening.reason, HasSubstr(c.reason));
  }
}

}  // namespace
}  // namespace skyhaul
