#include "transport/conversation_log.h"

#include <gtest/gtest.h>

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
  FlushLog(log, kEndOfLog_ns);
  EXPECT_EQ(text, expected + "  12.500 instrument  44  |D|\n");
}

TEST(ConversationLog, IsReadAsItWasWritten) {
  std::string bytes;
  for (int i = 0; i < 256; ++i) bytes += static_cast<char>(i);
  const std::vector<SpokenLine> lines = {
      {.time_ms = 0, .speaker = Speaker::kHost, .bytes = bytes, .line_number = 1},
      {.time_ms = 12'345'678, .speaker = Speaker::kInstrument, .bytes = "|", .line_number = 4}};
  const std::string text = FormatSpokenLine(lines[0]) + "   0.001 remark      any |text\n\r\n" +
                           FormatSpokenLine(lines[1]);
  std::vector<SpokenLine> read;
  std::string message;
  // A computer that loses its power cuts the last line off anywhere.
  for (const char* cut :
       {"", "  12.3", "  12.345 host        11 2", "  12.345 host        11  |."}) {
    EXPECT_EQ(ReadConversation(text + cut, read, message), 2) << message;
    EXPECT_EQ(read, lines);
    // The file system may have filled it up with zeros, and the next run has gone on behind it.
    std::string both = text;
    both.append(cut).append(2, '\0').append("\n   0.000 remark      next\n").append(text);
    EXPECT_EQ(ReadConversation(both, read, message), 4) << message;
  }
}

TEST(ConversationLog, NamesTheLineThatCannotBeRead) {
  const std::pair<const char*, const char*> cases[] = {
      {"  12.34 host  41  |A|", "it does not begin with seconds like 12.345"},
      {"  12.345 nobody  41  |A|", "it is neither the host's, the instrument's nor a remark"},
      {"  12.345 host  |A|", "its bytes cannot be read"},
      {"  12.345 host  4g  |A|", "its bytes cannot be read"},
      {"  12.345 host  41  |X|", "its text is not that of its bytes"},
  };
  for (const auto& [line, problem] : cases) {
    std::vector<SpokenLine> lines;
    std::string message;
    const std::string text = "   0.000 host  41  |A|\n" + std::string(line) + "\n";
    EXPECT_EQ(ReadConversation(text, lines, message), -1);
    EXPECT_EQ(message, std::string("Line 2 cannot be read: ") + problem);
    EXPECT_TRUE(lines.empty());
  }
}

}  // namespace
}  // namespace skyhaul
