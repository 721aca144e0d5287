#include "app/console/run_batch.h"

#include "app/command_line/parse.h"
#include "app/console/exit_status.h"
#include "platform/path.h"
#include "tests/commands/session_bench.h"

namespace skyhaul {
namespace {

class RunBatchTest : public SessionBench {
 protected:
  void SetUp() override {
    simulator.flights = {flytec_simulator::FlightFromIgc(IgcOfHour("12"))};
    SessionBench::SetUp();
    session.shell = &console_shell;
  }

  // Runs switches; "@" stands for the scratch folder. Returns the exit status.
  int RunText(std::string switches) {
    for (size_t at = switches.find('@'); at != switches.npos; at = switches.find('@')) {
      switches.replace(at, 1, folder.path.string());
    }
    CommandLineBlock block;
    std::string message;
    EXPECT_EQ(ParseCommandLine(switches, {}, block, message), 0) << message;
    return RunBlock(block);
  }

  int RunBlock(const CommandLineBlock& block) {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    const int status = RunBatch(session, console, block);
    out = testing::internal::GetCapturedStdout();
    err = testing::internal::GetCapturedStderr();
    return status;
  }

  Console console;
  const Shell console_shell = ConsoleShell(console);
  std::string out;
  std::string err;
};

TEST_F(RunBatchTest, ResultsAreShownAndTheClientIsTold) {
  const std::string cup =
      "name,code,country,lat,lon,elev,style,rwdir,rwlen,freq,desc\r\n"
      "\"Hof\",\"URT062\",DE,4743.564N,01121.571E,620.0m,1,,,,\r\n";
  WriteText(folder.File("a.cup"), cup);
  WriteText(folder.File("a.txt"),
            "AC R\r\nAN P\r\nAL GND\r\nAH FL 65\r\n"
            "V X=47:00:00 N 011:00:00 E\r\nDC 5\r\n");
  WriteText(folder.File("c.igc"), IgcOfHour("12"));
  const std::string at = folder.path.string();
  const std::string saved = AsFolder(at) + "2017-04-27-xxx-123-01.igc";
  const std::string identity = "Instrument 6030 SN01001 SW3.30\nOwner 6030: Simulated Pilot\n";
  const struct {
    const char* switches;
    std::string out;  // the end of it
    std::string told;
  } cases[] = {
      {"/GPS=IQCOMPEO /COM=1 /IGC_LOG=@ /ID=x",
       "*   1  2017-04-27  12:00:10  00:00:29\n" + identity + "Saved " + saved + '\n',
       "Done=1\n" + saved},
      {"/GPS=IQCOMPEO /COM=1 /OZI_LOG=@/b", identity + "Saved " + at + "/b\n",
       "Done=1\n" + at + "/b"},
      {"/GPS=IQCOMPEO /COM=1 /FLIGHTLIST", "Duration\n    1  2017-04-27  12:00:10  00:00:29\n",
       "Flight=1,2017-04-27,12:00:10,00:00:29|Done=1"},
      {"/GPS=IQCOMPEO /COM=1 /WR_WPT=@/a.cup", identity + "1 of 1 waypoints sent, 1 verified\n",
       "Done=1"},
      {"/GPS=IQCOMPEO /COM=1 /RD_GEO_WPT=@/g.wpt",
       identity + "1 waypoints saved in " + at + "/g.wpt\n", "Done=1\n" + at + "/g.wpt"},
      {"/GPS=IQCOMPEO /COM=1 /WR_CTR=@/a.txt /NOCHECK",
       identity + "1 of 1 airspaces sent, not verified\n", "Done=1"},
      {"/WPTSRC=@/a.cup /WPTDEST=@/d.gpx", "Waypoint file converted\n", "Done=1\n" + at + "/d.gpx"},
      {"/IGC2KML=@/c.igc", "Saved " + at + "/c.kml\n", "Done=1\n" + at + "/c.kml"},
  };
  for (const auto& c : cases) {
    bench.told.clear();
    EXPECT_EQ(RunText(c.switches + std::string(" /NOTIFY=me /SENDLOG=0")), kExitDone) << err;
    EXPECT_TRUE(out.ends_with(c.out)) << c.switches << '\n' << out;
    std::string told;
    for (const std::string& text : bench.told) told += (told.empty() ? "" : "|") + text.substr(4);
    EXPECT_EQ(told, c.told) << c.switches;
  }
  EXPECT_EQ(ReadText(folder.File("b")).find("OziExplorer Track Point File"), 0U);
  EXPECT_EQ(ReadText(folder.File("g.wpt")).find("$FormatGEO"), 0U);
  EXPECT_EQ(RunText("/GPS=IQCOMPEO /COM=1 /IGC_LOG=@ /ID=x"), kExitDone);
  EXPECT_NE(err.find("ID has no effect with this command\n"), std::string::npos);
  EXPECT_EQ(
      RunBlock({.present = true, .command = Command::kOpenFile, .file = folder.File("a.cup")}),
      kExitDone);
  EXPECT_NE(out.find("1 waypoints\n"), std::string::npos);
  WriteText(folder.File("b.txt"), "AC R\nDP 1 N 1 E\n");
  EXPECT_EQ(
      RunBlock({.present = true, .command = Command::kOpenFile, .file = folder.File("b.txt")}),
      kExitFailed);
  EXPECT_NE(out.find("Damaged         : Line 1: fewer than three"), std::string::npos) << out;
}

TEST_F(RunBatchTest, FailuresAreShownAndTheClientIsTold) {
  const struct {
    const char* switches;
    int status;
    const char* message;
  } cases[] = {
      {"/GPS=IQCOMPEO /COM=1 /IGC_LOG=@ /TRACK=3", kExitFailed, "There is no track 3 in the list"},
      {"/GPS=IQCOMPEO /COM=2 /IGC_LOG=@ /TIMEOUT=1", kExitFailed, "No valid response from GPS"},
      {"/GPS=GARMIN /USB /MPS_LOG=a.mps", kExitFailed, "cannot carry out this command"},
      {"/WPTSRC=@/none /WPTDEST=@/a.gpx", kExitFailed, "Waypoint file conversion failed"},
      {"/GPS=GARMIN", kExitBadCommandLine, "names nothing to do"},
  };
  for (const auto& c : cases) {
    bench.told.clear();
    EXPECT_EQ(RunText(c.switches + std::string(" /NOTIFY=me")), c.status) << c.switches;
    EXPECT_NE(err.find(c.message), std::string::npos) << err;
    EXPECT_EQ(bench.told, c.status == kExitFailed ? Texts{"me: Done=0"} : Texts{}) << c.switches;
  }
  EXPECT_TRUE(folder.Names().empty());
}

TEST_F(RunBatchTest, TheHelpKnowsWhichCommandsAreRefused) {
  for (int number = 1; number <= 19; ++number) {
    const CommandLineBlock block = {
        .present = true, .command = static_cast<Command>(number), .file = folder.File("none")};
    EXPECT_EQ(RunBlock(block), kExitFailed);
    const bool refused = err.find("cannot carry out this command") != std::string::npos;
    EXPECT_EQ(refused, !CarriedOut(block.command)) << number;
  }
}

TEST_F(RunBatchTest, ASlowClientHearsOfTheEndAndALostOneStopsNothing) {
  bench.missed_texts = 5;
  EXPECT_EQ(RunText("/GPS=IQCOMPEO /COM=1 /IGC_LOG=none /NOTIFY=me"), kExitFailed);
  EXPECT_EQ(bench.told, Texts{"me: Done=0"});
  bench.missed_texts = 1'000'000;
  EXPECT_EQ(RunText("/GPS=IQCOMPEO /COM=1 /IGC_LOG=@ /NOTIFY=me"), kExitDone);
  EXPECT_NE(err.find("Client me cannot be reached"), std::string::npos);
}

TEST_F(RunBatchTest, AnInterruptAbortsTheDownload) {
  // Nobody answers, and the job would go on asking for a day of virtual time.
  bench.instrument = nullptr;
  bench.fault = {.kind = FaultKind::kAbort, .at = 50};
  bench.abort = [](void*) { AbortJob(nullptr); };
  EXPECT_EQ(RunText("/GPS=IQCOMPEO /COM=1 /IGC_LOG=@ /TIMEOUT=86400 /NOTIFY=me"), kExitFailed);
  EXPECT_NE(err.find("Transfer aborted"), std::string::npos) << err;
  EXPECT_EQ(bench.told, Texts{"me: Done=0"});
}

}  // namespace
}  // namespace skyhaul
