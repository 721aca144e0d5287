#include "app/console/console_shell.h"

#include <gtest/gtest.h>

namespace skyhaul {
namespace {

const std::vector<TrackListEntry> kList = {
    {.index = 0, .start_time = 200, .duration_s = 3661},
    {.index = 1, .start_time = 300},
    {.index = 2, .start_time = 100},
};

TEST(ConsoleShell, ChoosesWhatWasAskedForOrTheNewest) {
  const struct {
    std::vector<uint32_t> numbers;
    int result;
    std::vector<uint32_t> chosen;
    const char* message;
  } cases[] = {
      {{}, 1, {1}, ""},
      {{1, 3}, 2, {0, 2}, ""},
      {{1, 4}, -1, {}, "Select track: There is no track 4 in the list\n"},
  };
  for (const auto& c : cases) {
    Console console;
    console.track_numbers = c.numbers;
    const Shell shell = ConsoleShell(console);
    std::vector<uint32_t> chosen;
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    EXPECT_EQ(shell.choose_tracks(shell.context, kList, chosen), c.result);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), TrackListTable(kList, c.chosen));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), c.message);
    EXPECT_EQ(chosen, c.chosen);
  }
  Console console;
  const Shell shell = ConsoleShell(console);
  std::vector<uint32_t> chosen;
  EXPECT_EQ(shell.choose_tracks(shell.context, {}, chosen), -1);
}

TEST(ConsoleShell, TheTableMarksTheChosen) {
  EXPECT_EQ(TrackListTable({kList[0], kList[1]}, {0}),
            "   No  Date        Start     Duration\n"
            "*   1  1989-12-31  00:03:20  01:01:01\n"
            "    2  1989-12-31  00:05:00  00:00:00\n");
}

std::string Told(bool terminal) {
  Console console;
  console.terminal = terminal;
  const Shell shell = ConsoleShell(console);
  testing::internal::CaptureStderr();
  shell.status(shell.context, "Receiving");
  shell.progress(shell.context, "Track position 101", 4);
  shell.progress(shell.context, "Track position 201", 8);
  shell.progress(shell.context, "Short", 15);
  shell.progress(shell.context, "No length", kUnknownPercent);
  shell.message(shell.context, "It broke", "Title");
  FinishProgressLine(console);
  return testing::internal::GetCapturedStderr();
}

TEST(ConsoleShell, ProgressIsOneLineOnATerminalAndSparseLinesElsewhere) {
  EXPECT_EQ(Told(true),
            "Receiving\n"
            "\rTrack position 101 4%\rTrack position 201 8%\rShort 15%            "
            "\rNo length\nTitle: It broke\n");
  EXPECT_EQ(Told(false),
            "Receiving\nTrack position 101 4%\nShort 15%\nNo length\nTitle: It broke\n");
}

TEST(ConsoleShell, WhatAnInstrumentSaysDoesNotSteerTheTerminal) {
  Console console;
  const Shell shell = ConsoleShell(console);
  testing::internal::CaptureStderr();
  shell.status(shell.context, "Owner: \x1b[2JJos\xe9\nsecond line");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "Owner: ?[2JJos\u00e9\nsecond line\n");
  testing::internal::CaptureStdout();
  PrintResult(console, "\x07 rang\n");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "? rang\n");
}

}  // namespace
}  // namespace skyhaul
