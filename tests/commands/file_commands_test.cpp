// The commands that need no instrument.

#include "commands/check_signature.h"
#include "commands/convert_file.h"
#include "commands/list_ports.h"
#include "commands/open_file.h"
#include "commands/repair_file.h"
#include "commands/score_flight.h"
#include "tests/commands/session_bench.h"

namespace skyhaul {
namespace {

const char* const kCup =
    "name,code,country,lat,lon,elev,style,rwdir,rwlen,freq,desc\r\n"
    "\"Urthaler Hof\",\"URT062\",DE,4743.564N,01121.571E,620.0m,1,,,,\r\n";

class FileCommandsTest : public SessionBench {
 protected:
  void SetUp() override {
    SessionBench::SetUp();
    WriteText(flight, IgcOfHour("12"));
    WriteText(places, kCup);
  }

  const std::string flight = folder.File("a.igc");
  const std::string places = folder.File("a.cup");
};

TEST_F(FileCommandsTest, OpeningReplacesTheListOfItsKindOrNothing) {
  const OpenFileResult opened = OpenFile(session, {.path = flight});
  ASSERT_TRUE(opened.done);
  EXPECT_EQ(std::get<FlightSummary>(opened.summary).fixes, 30U);
  EXPECT_EQ(opened.generation, document.State(ListKind::kFlight).generation);
  ASSERT_TRUE(OpenFile(session, {.path = places}).done);
  EXPECT_EQ(document.lists.waypoints->size(), 1U);
  EXPECT_EQ(document.State(ListKind::kWaypoints).source.name, places);
  EXPECT_FALSE(document.State(ListKind::kWaypoints).modified);

  WriteText(flight, "AXXX\r\nB120001474356xN\r\n");
  EXPECT_FALSE(OpenFile(session, {.path = flight}).done);
  EXPECT_TRUE(Said("Reading IGC log file: "));
  EXPECT_FALSE(OpenFile(session, {.path = places, .only = FileKind::kAirspace}).done);
  EXPECT_TRUE(Said("holds something else: Waypoints"));
  EXPECT_EQ(FlightPoints(), 30U);

  const auto summary = SummariseFile(session, places);
  EXPECT_EQ(std::get<ListSummary>(summary.value()).count, 1U);
  EXPECT_EQ(SummariseFile(session, folder.File("none.cup")), std::nullopt);
}

TEST_F(FileCommandsTest, ConvertsWithTheTimeOfToday) {
  const std::string copy = folder.File("b.igc");
  EXPECT_EQ(ConvertFile(session, {.from = flight, .to = copy}).records, 30U);
  EXPECT_EQ(ReadText(copy).find("Downloaded 1989"), std::string::npos) << ReadText(copy);
  EXPECT_NE(ReadText(copy).find("LXSH Downloaded 20"), std::string::npos);
  EXPECT_EQ(CheckSignature(session, copy)->check, igc::SecurityCheck::kNoRecord);

  EXPECT_FALSE(ConvertFile(session, {.from = flight, .to = copy}).done);
  EXPECT_TRUE(Said("exists already"));
  EXPECT_TRUE(ConvertFile(session, {.from = flight, .to = copy, .overwrite = true}).done);
  EXPECT_FALSE(
      ConvertFile(session, {.from = places, .to = folder.File("b.gpx"), .only = FileKind::kTrack})
          .done);
  EXPECT_EQ(document.lists.flight, nullptr);
}

TEST_F(FileCommandsTest, NeverConvertsAFileOntoItself) {
  const std::string before = ReadText(flight);
  EXPECT_FALSE(
      ConvertFile(
          session,
          {.from = flight, .to = folder.File("./a.igc"), .keyword = "kml", .overwrite = true})
          .done);
  EXPECT_TRUE(Said("Writing file: " + folder.File("./a.igc") + " is the file that is to be conv"));
  EXPECT_EQ(ReadText(flight), before);
}

TEST_F(FileCommandsTest, LeavesDamagedAirspacesOutAndShowsTheirNotesFirst) {
  std::string text;
  for (int i = 0; i < 30; ++i) text += "strange\n";
  for (int i = 0; i < 25; ++i) text += "AC R\nAN Bad\nDP 47:99 N 8 E\n";
  const std::string zones = folder.File("a.txt");
  const std::string copy = folder.File("b.txt");
  WriteText(zones, text + "AC D\nAN Good\nV X=1 N 1 E\nDC 5\n");
  const ConvertFileResult result = ConvertFile(session, {.from = zones, .to = copy});
  EXPECT_FALSE(result.done);
  EXPECT_EQ(result.records, 1U);
  EXPECT_EQ(ReadText(copy).find("Bad"), std::string::npos);
  EXPECT_TRUE(Said("Writing file: Airspace Bad is damaged and left out\nLine 33: position"));
  EXPECT_EQ(recorder.statuses.at(0).find(zones + ": Line 33: position not understood"), 0U);
  EXPECT_EQ(recorder.statuses.at(24).find("Line 105: position not understood"), 0U);
  EXPECT_EQ(recorder.statuses.at(25).find("Line 1: "), 0U);

  WriteText(zones, text);
  EXPECT_EQ(ConvertFile(session, {.from = zones, .to = folder.File("c.txt")}).records, 0U);
  EXPECT_FALSE(std::filesystem::exists(folder.path / "c.txt"));
}

TEST_F(FileCommandsTest, ScoresAFileOrTheDocumentsFlight) {
  Operation operation;
  EXPECT_FALSE(ScoreFlight(session, {}, operation).done);
  EXPECT_TRUE(Said("There is no flight"));
  ASSERT_TRUE(OpenFile(session, {.path = flight}).done);
  const ScoreFlightResult of_document = ScoreFlight(session, {.gap_m = 5}, operation);
  const ScoreFlightResult of_file =
      ScoreFlight(session, {.path = flight, .exact = true}, operation);
  ASSERT_TRUE(of_document.done && of_file.done);
  EXPECT_EQ(of_document.flight, document.lists.flight);
  EXPECT_EQ(of_document.generation, document.State(ListKind::kFlight).generation);
  EXPECT_EQ(of_document.score.settings.gap_m, 5);
  EXPECT_EQ(of_file.score.settings.gap_m, 800);
  EXPECT_NEAR(of_document.score.result.tasks[0].distance_m,
              of_file.score.result.tasks[0].distance_m, 0.01);
  operation.aborted = true;
  EXPECT_FALSE(ScoreFlight(session, {.path = flight}, operation).done);
}

TEST_F(FileCommandsTest, DamagedFlightsAreReadUnlessStrictlyAsked) {
  const Operation operation;
  WriteText(flight, "\n" + IgcOfHour("12"));
  const OpenFileResult opened = OpenFile(session, {.path = flight});
  ASSERT_TRUE(opened.done);
  EXPECT_EQ(std::get<FlightSummary>(opened.summary).header.pilot, "JIMI HENDRIX");
  EXPECT_NE(SummaryText(opened.summary).find("Repaired        Missing A-record; 1 line left out"),
            std::string::npos);
  EXPECT_EQ(recorder.statuses,
            (Texts{flight + ": Missing A-record; the file was read with repairs:",
                   "Line 1: in front of the A record; left out"}));
  EXPECT_TRUE(ScoreFlight(session, {.path = flight}, operation).done);
  EXPECT_TRUE(ConvertFile(session, {.from = flight, .to = folder.File("b.kml")}).done);

  EXPECT_FALSE(OpenFile(session, {.path = flight, .strict = true}).done);
  EXPECT_EQ(SummariseFile(session, flight, true), std::nullopt);
  EXPECT_FALSE(ScoreFlight(session, {.path = flight, .strict = true}, operation).done);
  EXPECT_FALSE(
      ConvertFile(session, {.from = flight, .to = folder.File("c.kml"), .strict = true}).done);
  for (const std::string& message : recorder.messages) {
    EXPECT_NE(message.find(": Missing A-record\n" + flight), std::string::npos) << message;
  }
}

TEST_F(FileCommandsTest, FixesWithoutAPositionAreLeftOutAsTheSettingSays) {
  const std::string nowhere = "B1201000000000N00000000EV0062000000\r\n";
  WriteText(flight, IgcOfHour("12") + nowhere);
  EXPECT_EQ(OpenFile(session, {.path = flight}).summary.index(), 0U);
  EXPECT_EQ(FlightPoints(), 30U);
  EXPECT_TRUE(Said("Left out: 1 fix without a position, on line 35"));
  defaults.log_filter = false;
  EXPECT_TRUE(OpenFile(session, {.path = flight}).done);
  EXPECT_EQ(FlightPoints(), 31U);
  defaults.log_filter = true;
  WriteText(flight, "AXXX\nHFDTE140526\n" + nowhere);
  EXPECT_FALSE(OpenFile(session, {.path = flight}).done);
  EXPECT_TRUE(Said("No positions: all 1 fixes are marked V and have none"));

  // A good place that is marked V, and one that is none, whatever the setting says.
  defaults.log_filter = false;
  const std::string igc = IgcOfHour("12");
  std::string marked = igc;
  marked[marked.find('A', marked.find("\nB"))] = 'V';
  WriteText(flight, marked + nowhere);
  EXPECT_EQ(ConvertFile(session, {.from = flight, .to = folder.File("d.igc")}).records, 29U);
  EXPECT_TRUE(Said("marked A: 2 fixes marked V, the first on line 4"));
  EXPECT_EQ(ReadText(folder.File("d.igc")).find("0000000N"), std::string::npos);
}

TEST_F(FileCommandsTest, RepairsKeepTheLinesAndNeverTheOriginalsPlace) {
  const std::string out = folder.File("out.igc");
  EXPECT_FALSE(RepairFile(session, {.from = flight, .to = out}).needed);
  EXPECT_EQ(folder.Names().size(), 2U);
  const std::string first = IgcOfHour("12");
  const std::string good = first.substr(0, first.find("G0123"));
  const std::string damaged = good + "B12010047\r\nG0123456789ABCDEF\r\n" + IgcOfHour("14");
  WriteText(flight, damaged);
  const RepairFileResult result = RepairFile(session, {.from = flight, .to = out});
  ASSERT_TRUE(result.done && result.needed);
  EXPECT_EQ(result.lines_left_out, 1U);
  EXPECT_EQ(result.fixes, 60U);
  EXPECT_EQ(result.written, (Texts{out, folder.File("out-2.igc")}));
  EXPECT_EQ(ReadText(out),
            good + "LXSH Repaired by Skyhaul 0.10, not original: 1 line left out\r\n");
  EXPECT_TRUE(Said("Line 34: a fix that cannot be read; left out"));

  EXPECT_FALSE(RepairFile(session, {.from = flight, .to = out}).done);
  EXPECT_TRUE(Said("exists already"));
  EXPECT_TRUE(RepairFile(session, {.from = flight, .to = out, .overwrite = true}).done);
  EXPECT_FALSE(RepairFile(session, {.from = flight, .to = flight, .overwrite = true}).done);
  EXPECT_EQ(ReadText(flight), damaged);
  const std::string no_file = folder.File(".");
  EXPECT_FALSE(RepairFile(session, {.from = flight, .to = no_file, .overwrite = true}).done);
  EXPECT_TRUE(Said(no_file + " is no file, and cannot take 2 flights"));

  // A flight that is lost beside a good one; each has its own count.
  WriteText(flight, "\n" + damaged + "AXXX\nHFDTExx\n" + good.substr(good.find('B')));
  const RepairFileResult some = RepairFile(session, {.from = flight, .to = out, .overwrite = true});
  EXPECT_FALSE(some.done);
  EXPECT_EQ(some.written.size(), 2U);
  EXPECT_TRUE(Said(" on is left out: no date that can be read"));
  EXPECT_NE(ReadText(out).find("original: 2 lines"), std::string::npos);
  EXPECT_NE(ReadText(some.written[1]).find("original: 0 lines"), std::string::npos);
  WriteText(flight, "AXXX\n" + good.substr(good.find('B')));
  EXPECT_FALSE(RepairFile(session, {.from = flight, .to = out, .overwrite = true}).done);
  EXPECT_TRUE(Said("It cannot be repaired: no date that can be read"));
}

TEST_F(FileCommandsTest, ChecksSignaturesAndListsPorts) {
  const auto foreign = CheckSignature(session, flight);
  EXPECT_EQ(foreign->check, igc::SecurityCheck::kFailed);
  EXPECT_EQ(foreign->manufacturer, "FLY");
  EXPECT_FALSE(foreign->ours);
  EXPECT_EQ(CheckSignature(session, folder.File("none")), std::nullopt);
  EXPECT_EQ(ListPorts(session)->size(), 1U);
  bench.list_fails = true;
  EXPECT_EQ(ListPorts(session), std::nullopt);
}

}  // namespace
}  // namespace skyhaul
