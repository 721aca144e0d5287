#include "app/console/batch.h"

#include <gtest/gtest.h>

#include "app/command_line/parse.h"
#include "core/track_log.h"
#include "instruments/bench.h"
#include "instruments/flytec/flytec_simulator.h"
#include "platform/path.h"
#include "tests/support/scratch_folder.h"

namespace skyhaul {
namespace {

using Texts = std::vector<std::string>;

std::string Igc(const char* hour) {
  std::string text = "AFLY123 6030\r\nHFDTE270417\r\nHFPLTPILOT: JIMI HENDRIX\r\n";
  for (int i = 0; i < 30; ++i) {
    char line[64];
    std::snprintf(line, sizeof line, "B%s00%02d4743%03dN01121571EA0062000640\r\n", hour, i, i);
    text += line;
  }
  return text + "G0123456789ABCDEF\r\n";
}

class BatchTest : public testing::Test {
 protected:
  void SetUp() override {
    simulator.pilot_name = "JIMI HENDRIX";
    simulator.flights = {flytec_simulator::FlightFromIgc(newest),
                         flytec_simulator::FlightFromIgc(oldest)};
    instrument = flytec_simulator::MakeInstrument(simulator, 57600);
    bench.instrument = &instrument;
    bench.ports = {{.number = 1, .name = "port1"}};
    platform = BenchPlatform(bench);
  }

  // Runs a command line whose folder is the scratch folder. Returns the exit status.
  int RunText(const std::string& switches) {
    CommandLineBlock block;
    std::string message;
    EXPECT_EQ(ParseCommandLine(switches, {}, block, message), 0) << message;
    if (block.command == Command::kTrackLogToIgc) block.file = folder.File(block.file);
    const BatchRun run = {.platform = &platform,
                          .settings = &settings,
                          .console = &console,
                          .interrupts = interrupts};
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    const int status = RunBatch(run, block);
    out = testing::internal::GetCapturedStdout();
    err = testing::internal::GetCapturedStderr();
    return status;
  }

  // All datagrams but the position reports.
  Texts Notices() const {
    Texts notices;
    for (const std::string& text : bench.told) {
      if (text.find("Pos=") == std::string::npos) notices.push_back(text);
    }
    return notices;
  }

  const std::string newest = Igc("12");
  const std::string oldest = Igc("11");
  ScratchFolder folder;
  flytec_simulator::Simulator simulator;
  SimulatedInstrument instrument;
  Bench bench;
  Platform platform;
  RunDefaults settings;
  Console console;
  int (*interrupts)() = nullptr;
  std::string out;
  std::string err;
};

TEST_F(BatchTest, SavesTheNewestFlightAndTellsTheClient) {
  ASSERT_EQ(RunText("/GPS=IQCOMPEO /COM=1 /IGC_LOG=. /NOTIFY=me /SENDLOG=10 /EXIT"), kExitDone);
  const std::string path = AsFolder(folder.File(".")) + "2017-04-27-xxx-123-01.igc";
  EXPECT_EQ(ReadText(path), newest);
  EXPECT_EQ(CurrentTrackLog().flight.points.size(), 30U);
  EXPECT_EQ(CurrentTrackLog().flight.instrument_igc.text, newest);
  EXPECT_EQ(bench.told.size(), 4U) << "three positions and the end";
  EXPECT_EQ(Notices(), Texts{"me: Done=1\n" + path});
  EXPECT_NE(out.find("Saved " + path), std::string::npos);
}

TEST_F(BatchTest, SeveralFlightsAreFilesInTheOrderTheyWereFlownOrOneLog) {
  ASSERT_EQ(RunText("/GPS=IQCOMPEO /COM=1 /IGC_LOG=. /TRACK=1-2 /OVERWRITE"), kExitDone);
  EXPECT_EQ(folder.Names(), (Texts{"2017-04-27-xxx-123-01.igc", "2017-04-27-xxx-123-02.igc"}));
  EXPECT_EQ(ReadText(folder.File("2017-04-27-xxx-123-01.igc")), oldest);
  EXPECT_EQ(ReadText(folder.File("2017-04-27-xxx-123-02.igc")), newest);

  ASSERT_EQ(RunText("/GPS=IQCOMPEO /COM=1 /IGC_LOG=. /TRACK=1,2 /NOSPLIT"), kExitDone);
  EXPECT_EQ(folder.Names().back(), "2017-04-27-xxx-123-02.igc");
  EXPECT_EQ(folder.Names().front(), "2017-04-27-xsh-000-01.igc");
  EXPECT_EQ(CurrentTrackLog().flight.points.size(), 60U);
  EXPECT_NE(ReadText(folder.File(folder.Names().front())).find("HFPLTPILOT: JIMI HENDRIX"),
            std::string::npos);
}

TEST_F(BatchTest, FindsThePortByItself) {
  bench.ports = {{.number = 1, .name = "other"}, {.number = 2, .name = "port1"}};
  EXPECT_EQ(RunText("/GPS=IQCOMPEO /IGC_LOG=."), kExitDone);
  EXPECT_EQ(folder.Names().size(), 1U);
}

TEST_F(BatchTest, AnInstrumentWithoutListGivesItsSelectedFlight) {
  simulator.device_name = "COMPETINO";
  simulator.software = "1.13";
  simulator.selected_flight = 1;
  EXPECT_EQ(RunText("/GPS=IQCOMPEO /COM=1 /IGC_LOG=."), kExitDone);
  EXPECT_EQ(ReadText(folder.File("2017-04-27-xxx-123-01.igc")), oldest);
  EXPECT_EQ(RunText("/GPS=IQCOMPEO /COM=1 /IGC_LOG=. /TRACK=1"), kExitFailed);
  EXPECT_NE(err.find("This instrument has no track list"), std::string::npos);
  EXPECT_EQ(RunText("/GPS=IQCOMPEO /COM=1 /FLIGHTLIST /NOTIFY=me"), kExitFailed);
}

TEST_F(BatchTest, ListsTheFlights) {
  ASSERT_EQ(RunText("/GPS=IQCOMPEO /COM=1 /FLIGHTLIST /NOTIFY=me"), kExitDone);
  EXPECT_EQ(bench.told, (Texts{"me: Flight=1,2017-04-27,12:00:00,00:00:29",
                               "me: Flight=2,2017-04-27,11:00:00,00:00:29", "me: Done=1"}));
  EXPECT_NE(out.find("    2  2017-04-27  11:00:00  00:00:29\n"), std::string::npos);
}

TEST_F(BatchTest, TracksThatArrivedWholeAreSavedEvenIfALaterOneFails) {
  InstallTrackLog({.points = {{.time = 77}}});
  simulator.flights[1].igc_text = "nonsense\r\n";
  EXPECT_EQ(RunText("/GPS=IQCOMPEO /COM=1 /IGC_LOG=. /TRACK=1,2 /NOTIFY=me"), kExitFailed);
  EXPECT_EQ(folder.Names(), Texts{"2017-04-27-xxx-123-01.igc"});
  EXPECT_EQ(Notices(),
            Texts{"me: Done=0\n" + AsFolder(folder.File(".")) + "2017-04-27-xxx-123-01.igc"});
  EXPECT_EQ(CurrentTrackLog().flight.points.size(), 1U) << "a failed job keeps the old track";
  EXPECT_EQ(RunText("/GPS=IQCOMPEO /COM=1 /IGC_LOG=. /TRACK=1,2 /NOSPLIT"), kExitFailed);
  EXPECT_EQ(folder.Names().size(), 1U) << "half of a joined log is none";
}

// A fault somewhere in the conversation: either the run says that it is done and the flight is
// saved, or it says that it is not, nothing is saved and the old track log is kept.
TEST_F(BatchTest, AFaultAnywhereKeepsTheOldTrackOrBringsTheNewOne) {
  ASSERT_EQ(RunText("/GPS=IQCOMPEO /COM=1 /IGC_LOG=."), kExitDone);
  const size_t received = bench.received;
  for (const FaultKind kind : {FaultKind::kDrop, FaultKind::kDelay, FaultKind::kUnplug}) {
    for (size_t at = 0; at < received; at += 13) {
      std::filesystem::remove_all(folder.path);
      std::filesystem::create_directory(folder.path);
      InstallTrackLog({.points = {{.time = 77}}});
      instrument = flytec_simulator::MakeInstrument(simulator, 57600);
      bench = {};
      bench.instrument = &instrument;
      bench.ports = {{.number = 1, .name = "port1"}};
      bench.fault = {.kind = kind, .at = at, .delay_ms = 2500};
      const int status = RunText("/GPS=IQCOMPEO /COM=1 /IGC_LOG=.");
      EXPECT_EQ(CurrentTrackLog().flight.points.size() == 1, status != kExitDone) << at;
      EXPECT_EQ(folder.Names().size(), status == kExitDone ? 1U : 0U) << at;
      EXPECT_TRUE(status == kExitDone || err.find(": ") != std::string::npos) << "untold at " << at;
    }
  }
}

TEST_F(BatchTest, FailuresAreToldAndKeepTheOldTrack) {
  InstallTrackLog({.points = {{.time = 77}}});
  const struct {
    const char* switches;
    int status;
    const char* message;
    bool told;
  } cases[] = {
      {"/GPS=IQCOMPEO /COM=1 /IGC_LOG=. /TRACK=3 /NOTIFY=me", kExitFailed,
       "There is no track 3 in the list", true},
      {"/GPS=IQCOMPEO /COM=2 /IGC_LOG=. /TIMEOUT=1 /NOTIFY=me", kExitFailed,
       "No valid response from GPS", true},
      {"/GPS=IQCOMPEO /COM=1 /IGC_LOG=none /NOTIFY=me", kExitFailed, "There is no folder", true},
      {"/GPS=FLYMASTER /COM=1 /IGC_LOG=. /NOTIFY=me", kExitFailed, "Unsupported access function",
       true},
      {"/GPS=GARMIN /USB /MPS_LOG=a.mps /NOTIFY=me", kExitFailed, "cannot carry out this command",
       true},
      {"/GPS=GARMIN", kExitBadCommandLine, "names nothing to do", false},
  };
  for (const auto& c : cases) {
    bench.told.clear();
    EXPECT_EQ(RunText(c.switches), c.status) << c.switches;
    EXPECT_NE(err.find(c.message), std::string::npos) << err;
    EXPECT_EQ(Notices(), c.told ? Texts{"me: Done=0"} : Texts{}) << c.switches;
    EXPECT_EQ(CurrentTrackLog().flight.points.size(), 1U);
    EXPECT_TRUE(folder.Names().empty());
  }
}

TEST_F(BatchTest, TheHelpKnowsWhichCommandsAreRefused) {
  for (int number = 1; number <= 19; ++number) {
    const CommandLineBlock block = {
        .present = true, .command = static_cast<Command>(number), .file = folder.File("none")};
    const BatchRun run = {.platform = &platform, .settings = &settings, .console = &console};
    testing::internal::CaptureStderr();
    EXPECT_EQ(RunBatch(run, block), kExitFailed);
    const std::string told = testing::internal::GetCapturedStderr();
    const bool refused = told.find("cannot carry out this command") != std::string::npos;
    EXPECT_EQ(refused, !CarriedOut(block.command)) << number;
  }
}

TEST_F(BatchTest, AClientThatIsGoneDoesNotStopTheDownload) {
  bench.missed_texts = 1'000'000;
  EXPECT_EQ(RunText("/GPS=IQCOMPEO /COM=1 /IGC_LOG=. /NOTIFY=me"), kExitDone);
  EXPECT_NE(err.find("Client me cannot be told"), std::string::npos);
  EXPECT_EQ(folder.Names().size(), 1U);
}

TEST_F(BatchTest, ASlowClientHearsOfTheEnd) {
  bench.missed_texts = 5;
  EXPECT_EQ(RunText("/GPS=IQCOMPEO /COM=1 /IGC_LOG=none /NOTIFY=me"), kExitFailed);
  EXPECT_EQ(Notices(), Texts{"me: Done=0"});
  EXPECT_EQ(err.find("cannot be told"), std::string::npos) << err;
}

TEST_F(BatchTest, AnInterruptAbortsTheDownload) {
  // Nobody answers, and the job would go on asking for a day of virtual time.
  bench.instrument = nullptr;
  interrupts = [] { return 1; };
  EXPECT_EQ(RunText("/GPS=IQCOMPEO /COM=1 /IGC_LOG=. /TIMEOUT=86400 /NOTIFY=me"), kExitFailed);
  EXPECT_NE(err.find("Transfer aborted"), std::string::npos) << err;
  EXPECT_EQ(Notices(), Texts{"me: Done=0"});
  EXPECT_TRUE(folder.Names().empty());
}

}  // namespace
}  // namespace skyhaul
