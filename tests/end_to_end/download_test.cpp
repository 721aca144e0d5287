#include <gtest/gtest.h>
#include <signal.h>

#include <cmath>

#include "formats/igc/write_igc.h"
#include "tests/end_to_end/program.h"

namespace skyhaul {
namespace {

using Texts = std::vector<std::string>;

class DownloadTest : public testing::Test {
 protected:
  void SetUp() override {
    WriteText(folder.File("flight.igc"), flight);
    std::filesystem::create_directory(folder.path / "saved");
  }

  Texts Download(const Texts& more = {}) const {
    Texts arguments = {SKYHAUL_PROGRAM, "/GPS=IQCOMPEO", "/COM=" + instrument.port,
                       "/IGC_LOG=" + folder.File("saved"), "/EXIT"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return arguments;
  }

  Texts Saved() const {
    Texts names;
    for (const auto& entry : std::filesystem::directory_iterator(folder.path / "saved")) {
      names.push_back(entry.path().string());
    }
    std::sort(names.begin(), names.end());
    return names;
  }

  const std::string flight = FlightText(900);
  ScratchFolder folder;
  Instrument instrument;
  Program program;
};

TEST_F(DownloadTest, SavesTheFlightToTheByteAndShowsIt) {
  StartInstrument(instrument, {"--flight", folder.File("flight.igc"), "--flights", "2"});
  ASSERT_EQ(RunToEnd(program, Download()), 0) << program.Err();
  ASSERT_EQ(Saved().size(), 1U);
  EXPECT_TRUE(ReadText(Saved()[0]) == flight) << "the saved file differs from the flight";
  EXPECT_NE(program.Out().find("Saved " + Saved()[0] + "\n"), std::string::npos);

  // The saved file's name begins with a slash, and it is a file all the same.
  ASSERT_EQ(RunToEnd(program, {SKYHAUL_PROGRAM, Saved()[0]}), 0);
  EXPECT_NE(program.Out().find("Pilot           ANNA MUSTER\n"), std::string::npos);
  EXPECT_NE(program.Out().find("Security        Security check PASSED\n"), std::string::npos);
}

// What one run has traced, played back to another.
TEST_F(DownloadTest, ATraceReplacesTheInstrument) {
  StartInstrument(instrument, {"--flight", folder.File("flight.igc"), "--baud", "0"});
  const std::string trace = folder.File("trace");
  // What a run that lost its power has left.
  WriteText(trace, "   0.000 host        11 24 5");
  setenv("SKYHAUL_TRACE", trace.c_str(), 1);
  EXPECT_EQ(RunToEnd(program, Download()), 0) << program.Err();
  unsetenv("SKYHAUL_TRACE");
  Instrument again;
  again.port = again.folder.File("port");
  Start(again.program, {SKYHAUL_INSTRUMENT, "replay", trace, "--at-once", "--link", again.port});
  ASSERT_TRUE(WaitForText(again.program, "out", "\n")) << again.program.Err();
  std::filesystem::remove(Saved().at(0));
  instrument.port = again.port;
  // A disk that is full from the start costs the trace, not the flight.
  EXPECT_EQ(RunToEnd(program, Download({"--trace", "/dev/full"})), 0) << again.program.Err();
  ASSERT_EQ(Saved().size(), 1U);
  EXPECT_TRUE(ReadText(Saved()[0]) == flight);
  const std::string told = "Writing the trace: /dev/full ends before the conversation does: ";
  EXPECT_EQ(program.Err().find(told), program.Err().rfind(told));
  EXPECT_NE(program.Err().find(told), std::string::npos) << program.Err();
}

TEST_F(DownloadTest, AnInterruptLeavesNothingHalfWritten) {
  StartInstrument(instrument, {"--flight", folder.File("flight.igc"), "--baud", "19200"});
  Start(program, Download());
  ASSERT_TRUE(WaitForText(program, "err", "Receiving track log"));
  kill(program.pid, SIGINT);
  EXPECT_EQ(WaitForEnd(program), 1);
  EXPECT_NE(program.Err().find("Aborting transfer\nTransfer aborted\n"), std::string::npos)
      << program.Err();
  EXPECT_TRUE(Saved().empty());
}

TEST_F(DownloadTest, ASecondInterruptEndsAtOnce) {
  Start(program, {SKYHAUL_PROGRAM, "/GPS=IQCOMPEO", "/COM=" + folder.File("none"),
                  "/IGC_LOG=" + folder.File("saved")});
  ASSERT_TRUE(WaitForText(program, "err", "Connecting to GPS"));
  // Stopped, it finds both waiting when it goes on.
  kill(program.pid, SIGSTOP);
  kill(program.pid, SIGINT);
  kill(program.pid, SIGTERM);
  kill(program.pid, SIGCONT);
  EXPECT_EQ(WaitForEnd(program), 130);
}

TEST_F(DownloadTest, AReaderThatGoesAwayDoesNotCostTheFlight) {
  StartInstrument(instrument, {"--flight", folder.File("flight.igc"), "--baud", "0"});
  std::string command;
  for (const std::string& argument : Download()) command += "'" + argument + "' ";
  EXPECT_EQ(RunToEnd(program, {"/bin/bash", "-c", "set -o pipefail; " + command + "| true"}), 1);
  ASSERT_EQ(Saved().size(), 1U);
  EXPECT_TRUE(ReadText(Saved()[0]) == flight);
}

// Between the list and the message another call fails for a reason of its own.
TEST_F(DownloadTest, SaysWhyAResultCouldNotBePrinted) {
  StartInstrument(instrument, {"--baud", "0"});
  std::filesystem::create_symlink("/dev/full", program.folder.File("out"));
  EXPECT_EQ(RunToEnd(program, {SKYHAUL_PROGRAM, "/GPS=IQCOMPEO", "/COM=" + instrument.port,
                               "/NOTIFY=/none", "/FLIGHTLIST", "/EXIT"}),
            1);
  EXPECT_NE(program.Err().find("Writing to standard output: No space left on device\n"),
            std::string::npos)
      << program.Err();
}

TEST_F(DownloadTest, ALimitOnFileSizesIsAFailureLikeAnyOther) {
  const std::string target = folder.File("flight.kml");
  EXPECT_EQ(RunToEnd(program, {"/bin/bash", "-c", "ulimit -f 1; exec \"$0\" \"$@\"",
                               SKYHAUL_PROGRAM, "--convert", folder.File("flight.igc"), target}),
            1);
  EXPECT_EQ(program.Err(), "Writing file: File write error\n" + target + ": File too large\n");
}

TEST_F(DownloadTest, AMissingFileDoesNotStopTheScores) {
  const std::string file = folder.File("flight.igc");
  EXPECT_EQ(RunToEnd(program, {SKYHAUL_PROGRAM, "--score", folder.File("missing.igc"), file}), 1);
  EXPECT_NE(program.Err().find("missing.igc"), std::string::npos) << program.Err();
  EXPECT_NE(program.Out().find("Gap "), std::string::npos) << program.Out();
}

TEST_F(DownloadTest, BadCommandLinesAreTold) {
  const std::string file = folder.File("flight.igc");
  const std::tuple<Texts, int, const char*> cases[] = {
      {{"/GPS=NOBODY"}, 2, "Parsing command line: Bad GPS type\n"},
      {{"--info", folder.File("missing.igc")}, 1, "Error opening IGC Log File"},
      {{file, "/EXIT"}, 0, ""},
      {{file, folder.File("client"), "/EXIT"}, 2, "Unrecognized command"},
      {{"--ports"}, 0, ""},
      {{"--ports", "--trace", folder.File("none/trace")}, 1, "Writing the trace: "},
      {{"--check", file, "--trace", folder.File("./flight.igc")}, 1, " is a file of the command"},
      {{"--ports", "--trace", "/dev/ptmx"}, 1, "It is a terminal or a serial port"},
  };
  for (const auto& [more, status, message] : cases) {
    Texts arguments = {SKYHAUL_PROGRAM};
    arguments.insert(arguments.end(), more.begin(), more.end());
    EXPECT_EQ(RunToEnd(program, arguments), status) << more[0];
    EXPECT_NE(program.Err().find(message), std::string::npos) << program.Err();
    EXPECT_EQ(program.Out().empty(), status != 0) << more[0];
  }
}

// Laps on one circle: nobody can prove soon which of them is best.
std::string LapsText() {
  constexpr double kTurn_rad = 0.01;
  std::vector<TrackPoint> points(20'000);
  for (size_t i = 0; i < points.size(); ++i) {
    const double angle_rad = kTurn_rad * static_cast<double>(i);
    points[i].time = 1'200'000'000 + static_cast<uint32_t>(i);
    points[i].lat = 500'000'000 + static_cast<int32_t>(1e6 * std::cos(angle_rad));
    points[i].lon = 100'000'000 + static_cast<int32_t>(1e6 * std::sin(angle_rad));
  }
  std::string text;
  igc::Write(points, {}, {}, text);
  return text;
}

TEST_F(DownloadTest, AnInterruptedScoreShowsTheBestSoFar) {
  const std::string laps = folder.File("laps.igc");
  WriteText(laps, LapsText());
  Start(program, {SKYHAUL_PROGRAM, "--score", laps, laps, "--exact"});
  ASSERT_TRUE(WaitForText(program, "err", "laps.igc 0%"));
  kill(program.pid, SIGINT);
  EXPECT_EQ(WaitForEnd(program), 1);
  const std::string out = program.Out();
  const size_t stopped = out.find("stopped: the best so far");
  ASSERT_NE(stopped, std::string::npos) << out;
  EXPECT_NE(out.find("not proved, at most"), std::string::npos) << out;
  EXPECT_EQ(out.find("Distances", stopped), std::string::npos) << "the next file is left";
}

// "ulimit -v" counts kilobytes; a sanitizer's own memory is far beyond any limit.
TEST_F(DownloadTest, TooLittleMemoryIsOneLineAndStatus1) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  GTEST_SKIP() << "a sanitized program cannot run with little memory";
#endif
  std::filesystem::resize_file(folder.File("flight.igc"), 500'000'000);
  EXPECT_EQ(RunToEnd(program, {"/bin/bash", "-c", "ulimit -v 300000; exec \"$@\"", "bash",
                               SKYHAUL_PROGRAM, "--info", folder.File("flight.igc")}),
            1);
  EXPECT_EQ(program.Err(), "Skyhaul: not enough memory; close other programs and try again\n");
}

}  // namespace
}  // namespace skyhaul
