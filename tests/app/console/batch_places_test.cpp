// Waypoints, airspace and tracks between files and the simulated instrument, in virtual time.

#include <gtest/gtest.h>

#include "app/command_line/parse.h"
#include "app/console/batch.h"
#include "formats/formatgeo/read_formatgeo.h"
#include "instruments/bench.h"
#include "instruments/flytec/flytec_simulator.h"
#include "tests/support/scratch_folder.h"

namespace skyhaul {
namespace {

using Texts = std::vector<std::string>;

class BatchPlacesTest : public testing::Test {
 protected:
  void SetUp() override {
    simulator.pilot_name = "JIMI HENDRIX";
    instrument = flytec_simulator::MakeInstrument(simulator, 57600);
    bench.instrument = &instrument;
    bench.ports = {{.number = 1, .name = "port1"}};
    platform = BenchPlatform(bench);
  }

  // Runs switches; "@" stands for the scratch folder. Returns the exit status.
  int RunText(std::string switches) {
    for (size_t at = switches.find('@'); at != switches.npos; at = switches.find('@')) {
      switches.replace(at, 1, folder.path.string());
    }
    CommandLineBlock block;
    std::string message;
    EXPECT_EQ(ParseCommandLine(switches, {}, block, message), 0) << message;
    const BatchRun run = {.platform = &platform, .settings = &settings, .console = &console};
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    const int status = RunBatch(run, block);
    out = testing::internal::GetCapturedStdout();
    err = testing::internal::GetCapturedStderr();
    return status;
  }

  bool Said(const std::string& text) const {
    return err.find(text) != err.npos || out.find(text) != out.npos;
  }

  ScratchFolder folder;
  flytec_simulator::Simulator simulator;
  SimulatedInstrument instrument;
  Bench bench;
  Platform platform;
  RunDefaults settings;
  Console console;
  std::string out;
  std::string err;
};

const char* const kCup =
    "name,code,country,lat,lon,elev,style,rwdir,rwlen,freq,desc\r\n"
    "\"Urthaler Hof\",\"URT062\",DE,4743.564N,01121.571E,620.0m,1,,,,\r\n"
    "\"Santa Elena\",\"STAELENA\",CO,0613.000S,07530.000W,2400.0m,1,,,,\r\n";

TEST_F(BatchPlacesTest, WaypointsGoUpAndComeDownAgain) {
  WriteText(folder.File("a.cup"), kCup);
  ASSERT_EQ(RunText("/GPS=IQCOMPEO /COM=1 /WR_WPT=@/a.cup /NOTIFY=me"), kExitDone) << err;
  EXPECT_EQ(simulator.waypoints.size(), 2U);
  EXPECT_TRUE(Said("2 of 2 waypoints sent")) << out << err;
  EXPECT_FALSE(Said("characters")) << "both names went whole, but a change was reported: " << err;
  EXPECT_EQ(bench.told, Texts{"me: Done=1"});

  bench.told.clear();
  ASSERT_EQ(RunText("/GPS=IQCOMPEO /COM=1 /RD_GEO_WPT=@/b.wpt /NOTIFY=me"), kExitDone) << err;
  EXPECT_EQ(bench.told, Texts{"me: Done=1\n" + folder.File("b.wpt")});
  WaypointFile file;
  std::string message;
  ASSERT_EQ(formatgeo::ReadGeo(ReadText(folder.File("b.wpt")), file, message), 2) << message;
  EXPECT_EQ(file.waypoints[0].description, "Urthaler Hof");
  EXPECT_NEAR(file.waypoints[0].altitude_m, 620, 0.5);
  EXPECT_NEAR(file.waypoints[1].lat * 180.0 / 2147483648.0, -(6 + 13.0 / 60), 1e-5);
  EXPECT_NEAR(file.waypoints[1].lon * 180.0 / 2147483648.0, -75.5, 1e-5);

  EXPECT_EQ(RunText("/GPS=IQCOMPEO /COM=1 /RD_WPT=@/b.wpt"), kExitFailed);
  EXPECT_TRUE(Said("exists already"));
  for (const char* name : {"c.gpx", "c.cup", "c.wpt", "c", "c.dat"}) {
    EXPECT_EQ(RunText(std::string("/GPS=IQCOMPEO /COM=1 /RD_WPT=@/") + name), kExitDone) << err;
  }
}

TEST_F(BatchPlacesTest, EveryWaypointArrivesUnderANameOfItsOwnOrIsNamed) {
  WriteText(folder.File("a.cup"),
            "name,code,country,lat,lon,elev,style,rwdir,rwlen,freq,desc\r\n"
            "\"Fiesch\",,CH,4624.000N,00808.000E,1050.0m,1,,,,\"Landeplatz, Funk 130.925\"\r\n"
            "\"Startplatz Niesen Nord oben\",,CH,4638.000N,00739.000E,2300.0m,1,,,,\r\n"
            "\"Startplatz Niesen Sued\",,CH,4638.500N,00739.500E,2300.0m,1,,,,\r\n"
            "\"Chamonix Planpraz\",,FR,4556.000N,00651.000E,2000.0m,1,,,,\r\n"
            "\"Date line\",,FJ,1700.000S,18000.000E,10.0m,1,,,,\r\n"
            "\"Too high\",,FJ,1700.000S,17900.000E,123456ft,1,,,,\r\n"
            "\"Orbit\",,FJ,1700.000S,17900.000E,99999.6m,1,,,,\r\n");
  EXPECT_EQ(RunText("/GPS=IQCOMPEO /COM=1 /WR_WPT=@/a.cup"), kExitFailed);
  Texts names;
  for (const flytec_simulator::StoredWaypoint& waypoint : simulator.waypoints)
    names.push_back(waypoint.long_name);
  EXPECT_EQ(names, (Texts{"Fiesch           ", "Startplatz Niesen", "Startplatz Niese2",
                          "Chamonix Planpraz", "Too high         "}));
  EXPECT_TRUE(Said("5 of 7 waypoints sent")) << out;
  EXPECT_TRUE(Said("2 names were changed to fit 17 characters")) << err;
  EXPECT_TRUE(Said("Waypoint Date line lies where the instrument knows no position")) << err;
  EXPECT_TRUE(Said("Waypoint Orbit has an altitude of more than five characters")) << err;
  EXPECT_EQ(RunText("/GPS=IQCOMPEO /COM=1 /RD_WPT=@/b.gpx"), kExitDone) << err;
}

TEST_F(BatchPlacesTest, AirspaceIsSentAndRefusalsAreTold) {
  WriteText(
      folder.File("a.txt"),
      "AC D\r\nAN Innsbruck\r\nAL GND\r\nAH FL 125\r\n"
      "V X=47:10:00 N 011:04:42 E\r\nDC 5\r\n\r\n"
      "AC R\r\nAN Points\r\nAL GND\r\nAH 3000ft MSL\r\n"
      "DP 47:00:00 N 011:00:00 E\r\nDP 47:10:00 N 011:00:00 E\r\nDP 47:00:00 N 011:10:00 E\r\n");
  ASSERT_EQ(RunText("/GPS=IQCOMPEO /COM=1 /WR_CTR=@/a.txt"), kExitDone) << err;
  EXPECT_EQ(simulator.airspaces.size(), 2U);
  EXPECT_TRUE(Said("CTR transfer ok"));
  EXPECT_TRUE(Said("2 of 2 airspaces sent"));
  const struct {
    flytec_simulator::Refusal refusal;
    const char* message;
  } cases[] = {
      {flytec_simulator::Refusal::kPlausibility, "Plausibility error"},
      {flytec_simulator::Refusal::kMemory, "No further memory"},
      {flytec_simulator::Refusal::kProtected, "No more writing allowed"},
      {flytec_simulator::Refusal::kSyntax, "NMEA syntax error"},
      {flytec_simulator::Refusal::kSilent, "Missing CTR upload ack."},
  };
  for (const auto& c : cases) {
    simulator.refusal = c.refusal;
    EXPECT_EQ(RunText("/GPS=IQCOMPEO /COM=1 /WR_CTR=@/a.txt"), kExitFailed);
    EXPECT_TRUE(Said(c.message)) << err;
  }
}

TEST_F(BatchPlacesTest, AirspacesThatCannotBeToldAreNamedAndTheRestIsSent) {
  WriteText(folder.File("a.txt"),
            "AC D\r\nAN TMA FRANKFURT PART 1\r\nAL GND\r\nAH FL 65\r\n"
            "V X=47:00:00 N 011:00:00 E\r\nDA 5,0,360\r\n\r\n"
            "AC D\r\nAN TMA FRANKFURT PART 2\r\nAL GND\r\nAH FL 65\r\n"
            "V X=47:00:00 N 011:00:00 E\r\nDA 60,0,90\r\n\r\n"
            "AC D\r\nAN Tiny\r\nAL GND\r\nAH FL 65\r\nV X=47:00:00 N 011:00:00 E\r\nDC 0.0001\r\n");
  EXPECT_EQ(RunText("/GPS=IQCOMPEO /COM=1 /WR_CTR=@/a.txt"), kExitFailed);
  ASSERT_EQ(simulator.airspaces.size(), 2U);
  EXPECT_EQ(simulator.airspaces[0].name, "TMA FRANKFURT PAR");
  EXPECT_EQ(simulator.airspaces[0].elements, Texts{"C,4700.000,N,01100.000,E,09260"});
  EXPECT_EQ(simulator.airspaces[1].name, "TMA FRANKFURT PA2");
  EXPECT_TRUE(Said("2 of 3 airspaces sent")) << out;
  EXPECT_TRUE(Said("CTR Tiny has a radius")) << err;
}

TEST_F(BatchPlacesTest, TracksAreSavedInOtherFormats) {
  const std::string flight =
      "AFLY123 6030\r\nHFDTE270417\r\nB1200004743000N01121571EA0062000640\r\n"
      "B1200014743001N01121571EA0062000640\r\nG00\r\n";
  simulator.flights = {flytec_simulator::FlightFromIgc(flight),
                       flytec_simulator::FlightFromIgc(flight)};
  ASSERT_EQ(RunText("/GPS=IQCOMPEO /COM=1 /KML_LOG=@/a.kml /TRACK=1,2"), kExitDone) << err;
  EXPECT_NE(ReadText(folder.File("a.kml")).find("<gx:Track>"), std::string::npos);
  ASSERT_EQ(RunText("/GPS=IQCOMPEO /COM=1 /OZI_LOG=@/b.plt"), kExitDone) << err;
  EXPECT_EQ(ReadText(folder.File("b.plt")).find("OziExplorer Track Point File"), 0U);
  EXPECT_EQ(folder.Names(), (Texts{"a-2.kml", "a.kml", "b.plt"}));
  // The first name is taken: the others are saved all the same.
  std::filesystem::rename(folder.path / "a-2.kml", folder.path / "d-2.kml");
  EXPECT_EQ(RunText("/GPS=IQCOMPEO /COM=1 /KML_LOG=@/d.kml /TRACK=1,2"), kExitFailed);
  EXPECT_TRUE(Said("Saved " + folder.File("d.kml"))) << out;
  const size_t opens = bench.opens;
  EXPECT_EQ(RunText("/GPS=IQCOMPEO /COM=1 /KML_LOG=@/d.kml"), kExitFailed);
  EXPECT_TRUE(Said("exists already"));
  EXPECT_EQ(RunText("/GPS=IQCOMPEO /COM=1 /OZI_LOG=@/e.gpx"), kExitFailed);
  EXPECT_TRUE(Said("Tracks cannot be written as"));
  EXPECT_EQ(bench.opens, opens) << "told before the download";
  EXPECT_EQ(RunText("/GPS=IQCOMPEO /COM=1 /KML_LOG=@/none/a.kml"), kExitFailed);
  EXPECT_TRUE(Said("There is no folder"));

  WriteText(folder.File("c.igc"), flight);
  ASSERT_EQ(RunText("/IGC2KML=@/c.igc"), kExitDone) << err;
  EXPECT_NE(ReadText(folder.File("c.kml")).find("<gx:Track>"), std::string::npos);
  std::filesystem::create_directory(folder.path / "a.b");
  WriteText(folder.File("a.b/flight"), flight);
  ASSERT_EQ(RunText("/IGC2KML=@/a.b/flight"), kExitDone) << err;
  EXPECT_TRUE(std::filesystem::exists(folder.path / "a.b" / "flight.kml"));
}

TEST_F(BatchPlacesTest, WaypointFilesAreConverted) {
  WriteText(folder.File("a.cup"), kCup);
  ASSERT_EQ(RunText("/WPTSRC=@/a.cup /WPTDEST=@/b.gpx"), kExitDone) << err;
  EXPECT_EQ(out, "Waypoint file converted\n");
  EXPECT_EQ(RunText("/WPTSRC=@/a.cup /WPTDEST=@/b.xyz"), kExitFailed);
  EXPECT_TRUE(Said("Waypoint file conversion failed"));
  EXPECT_TRUE(Said("cup (.cup)")) << "the list of what can be written";
}

TEST_F(BatchPlacesTest, WrongFilesSayWhatTheyLookLike) {
  const struct {
    const char* name;
    const char* text;
    const char* message;
  } cases[] = {
      {"a.gpx", kCup, "it looks like: SeeYou CUP file"},
      {"a.txt", kCup, "holds something else: Waypoints"},
      {"a.txt", "nothing at all", "is no file that can be read"},
      {"a.txt", "", "File is empty"},
      {"a.kml", "<kml/>", "KML tracks can only be written\nWhat can be read:"},
      {"a.cup", "nothing", "not the heading of a SeeYou CUP file"},
  };
  for (const auto& c : cases) {
    WriteText(folder.File(c.name), c.text);
    EXPECT_EQ(RunText(std::string("/GPS=IQCOMPEO /COM=1 /WR_CTR=@/") + c.name), kExitFailed);
    EXPECT_TRUE(Said(c.message)) << err;
    EXPECT_EQ(bench.opens, 0U) << "the port need not be opened";
  }
  EXPECT_EQ(RunText("/GPS=IQCOMPEO /COM=1 /WR_WPT=@/missing.cup"), kExitFailed);
  EXPECT_TRUE(Said("Error opening file"));
}

}  // namespace
}  // namespace skyhaul
