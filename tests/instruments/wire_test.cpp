#include <gtest/gtest.h>

#include <algorithm>

#include "instruments/conversation_log.h"
#include "instruments/wire.h"

namespace skyhaul {
namespace {

constexpr uint64_t kMillisecond_ns = 1'000'000;

void Append(void* context, std::string_view line) {
  *static_cast<std::string*>(context) += line;
}

TEST(ConversationLog, OneLineForWhatOneSideSentInOneGo) {
  std::string text;
  ConversationLog log{.write = Append, .context = &text};
  LogBytes(log, Speaker::kHost, "\x11$A\r", 12'345 * kMillisecond_ns);
  LogBytes(log, Speaker::kHost, "\n", 12'350 * kMillisecond_ns);
  LogBytes(log, Speaker::kInstrument, "\x13", 12'351 * kMillisecond_ns);
  LogRemark(log, "answering $A", 12'352 * kMillisecond_ns);
  LogBytes(log, Speaker::kInstrument, "B\r\nC", 12'360 * kMillisecond_ns);
  LogBytes(log, Speaker::kInstrument, "D", 12'500 * kMillisecond_ns);
  FlushLog(log, 12'505 * kMillisecond_ns);  // too early for D
  const std::string expected =
      "  12.345 host        11 24 41 0D 0A  |.$A..|\n"
      "  12.351 instrument  13  |.|\n"
      "  12.352 remark      answering $A\n"
      "  12.360 instrument  42 0D 0A  |B..|\n"
      "  12.360 instrument  43  |C|\n";
  EXPECT_EQ(text, expected);
  FlushLog(log, kNever_ns);
  EXPECT_EQ(text, expected + "  12.500 instrument  44  |D|\n");
}

TEST(ConversationLog, LongBurstsAreSplit) {
  std::string text;
  ConversationLog log{.write = Append, .context = &text};
  LogBytes(log, Speaker::kHost, std::string(250, 'x'), 0);
  FlushLog(log, kNever_ns);
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 3);
  EXPECT_EQ(std::count(text.begin(), text.end(), 'x'), 250);
}

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
