#include "transport/trace.h"

#include <gtest/gtest.h>

namespace skyhaul {
namespace {

TEST(Trace, HexDumpBreaksAfterSixteenBytesAndAtTheEnd) {
  const std::string line = " 00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F\n";
  const std::pair<size_t, std::string> cases[] = {
      {0, ""}, {3, " 00 01 02\n"}, {16, line}, {17, line + " 10\n"}};
  for (const auto& [count, expected] : cases) {
    ClearTrace();
    std::vector<uint8_t> bytes;
    for (size_t i = 0; i < count; ++i) bytes.push_back(static_cast<uint8_t>(i));
    TraceHexDump(bytes.data(), bytes.size());
    EXPECT_EQ(TraceContents(), expected);
  }
}

TEST(Trace, StopsSilentlyWhenFull) {
  ClearTrace();
  TraceText(std::string(kTraceCapacity - 2, 'x'));
  const uint8_t bytes[] = {'a', 'b', 'c'};
  TraceBytes(bytes, 3);
  TraceText("more");
  EXPECT_EQ(TraceContents().size(), kTraceCapacity);
  EXPECT_EQ(TraceContents().substr(kTraceCapacity - 3), "xab");
  ClearTrace();
  EXPECT_EQ(TraceContents(), "");
}

}  // namespace
}  // namespace skyhaul
