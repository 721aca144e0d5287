#include "app/console/console_shell.h"

#include <gtest/gtest.h>

namespace skyhaul {
namespace {

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
