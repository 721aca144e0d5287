#include "commands/download_flights.h"

#include "platform/path.h"
#include "tests/commands/session_bench.h"

namespace skyhaul {
namespace {

using How = FlightChoice::How;
using Kind = FlightTarget::Kind;

class DownloadFlightsTest : public SessionBench {
 protected:
  void SetUp() override {
    simulator.flights = {flytec_simulator::FlightFromIgc(newest),
                         flytec_simulator::FlightFromIgc(oldest)};
    SessionBench::SetUp();
    request.instrument = flytec;
    request.flights.how = How::kNewest;
    request.target.path = folder.File(".");
  }

  DownloadFlightsResult Run() {
    return RunToEnd<DownloadFlightsResult>(
        [&](auto end) { DownloadFlights(session, request, end); });
  }

  // Asks for flights by their list numbers.
  void Choose(std::vector<uint32_t> numbers) {
    request.flights = {.how = How::kNumbers, .numbers = std::move(numbers)};
  }

  const std::string newest = IgcOfHour("12");
  const std::string oldest = IgcOfHour("11");
  DownloadFlightsRequest request;
};

TEST_F(DownloadFlightsTest, TheNewestIsSavedAndBecomesTheDocuments) {
  request.instrument.client = "me";
  const DownloadFlightsResult result = Run();
  EXPECT_TRUE(result.done);
  EXPECT_EQ(result.written, Texts{AsFolder(folder.File(".")) + "2017-04-27-xxx-123-01.igc"});
  EXPECT_EQ(ReadText(result.written[0]), newest);
  EXPECT_EQ(FlightPoints(), 30U);
  EXPECT_EQ(document.lists.flight->instrument_igc.text, newest);
  EXPECT_FALSE(document.State(ListKind::kFlight).modified);
  EXPECT_EQ(document.identity.owner, "6030: Simulated Pilot");
  EXPECT_EQ(recorder.chosen, std::vector<uint32_t>{0});
  EXPECT_EQ(bench.told.size(), 3U) << "positions of 30 s, one each 10 s";
}

TEST_F(DownloadFlightsTest, SeveralAreFilesInTheOrderTheyWereFlownOrOneFlight) {
  Choose({1, 2});
  ASSERT_TRUE(Run().done);
  EXPECT_EQ(ReadText(folder.File("2017-04-27-xxx-123-01.igc")), oldest);
  EXPECT_EQ(ReadText(folder.File("2017-04-27-xxx-123-02.igc")), newest);
  EXPECT_EQ(document.lists.flight->instrument_igc.text, newest);
  request.join = true;
  ASSERT_TRUE(Run().done);
  EXPECT_EQ(FlightPoints(), 60U);
  EXPECT_NE(ReadText(folder.File("2017-04-27-xsh-000-01.igc")).find("HFPLTPILOT: Simulated Pilot"),
            std::string::npos);
}

TEST_F(DownloadFlightsTest, APersonIsOnlyAskedWhenTheRequestLeavesItOpen) {
  request.flights.how = How::kAsk;
  recorder.choice = {1};
  ASSERT_TRUE(Run().done);
  EXPECT_EQ(recorder.list.size(), 2U);
  EXPECT_EQ(document.lists.flight->instrument_igc.text, oldest);
  recorder.choice = {};
  EXPECT_FALSE(Run().done);
}

TEST_F(DownloadFlightsTest, AnInstrumentWithoutListGivesItsSelectedFlight) {
  simulator.device_name = "COMPETINO";
  simulator.software = "1.13";
  simulator.selected_flight = 1;
  ASSERT_TRUE(Run().done);
  EXPECT_EQ(document.lists.flight->instrument_igc.text, oldest);
  Choose({1});
  EXPECT_FALSE(Run().done);
  EXPECT_TRUE(Said("leave TRACK out"));
  // A byte of the name was changed on the way.
  simulator.device_name = "6130";
  request.flights.how = How::kNewest;
  EXPECT_TRUE(Run().written.empty());
  EXPECT_TRUE(Said("calls itself 6130 SN01001 SW1.13, a model that this program does not know"));
  simulator.device_name = "COMPETINO";
  EXPECT_FALSE(
      RunToEnd<FlightListResult>([&](auto end) { ReadFlightList(session, flytec, end); }).done);
  EXPECT_EQ(recorder.messages.back(), "Read GPS track list: This instrument has no track list");
}

TEST_F(DownloadFlightsTest, FilesOfOtherFormatsAreNumbered) {
  Choose({1, 2});
  request.target = {.kind = Kind::kFile, .path = folder.File("a.kml")};
  ASSERT_TRUE(Run().done);
  EXPECT_EQ(folder.Names(), (Texts{"a-2.kml", "a.kml"}));
  // The second name is taken, which is found out before the transfer.
  std::filesystem::rename(folder.path / "a-2.kml", folder.path / "d-2.kml");
  request.target.path = folder.File("d.kml");
  const size_t opens = bench.opens;
  EXPECT_FALSE(Run().done);
  EXPECT_EQ(bench.opens, opens);
  // An IGC file under a fixed name holds the instrument's own text.
  request.target.path = folder.File("x.igc");
  request.flights.how = How::kNewest;
  ASSERT_TRUE(Run().done);
  EXPECT_EQ(ReadText(folder.File("x.igc")), newest);
}

TEST_F(DownloadFlightsTest, AFilterCutsWhatIsWrittenButNotTheInstrumentsOwnText) {
  constexpr uint32_t kNoon_s = 12 * 3600;
  request.target.filter = {.start_s = kNoon_s + 12, .stop_s = kNoon_s + 20};
  ASSERT_TRUE(Run().done);
  EXPECT_EQ(ReadText(folder.File("2017-04-27-xxx-123-01.igc")), newest);
  EXPECT_TRUE(Said("the instrument's own record is saved whole"));

  request.target.kind = Kind::kFile;
  request.target.path = folder.File("a.plt");
  ASSERT_TRUE(Run().done);
  const std::string text = ReadText(folder.File("a.plt"));
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 6 + 9) << "heading and nine fixes";
  EXPECT_EQ(FlightPoints(), 30U) << "the document has the whole flight";

  request.target.path = folder.File("b.plt");
  request.target.filter = {.start_s = kNoon_s + 60};
  EXPECT_FALSE(Run().done);
  EXPECT_TRUE(Said("no positions between the times of FILTER and FILTEREND"));
}

TEST_F(DownloadFlightsTest, WhatCannotBeSavedIsReportedBeforeTheDownload) {
  WriteText(folder.File("there.kml"), "old");
  std::string deep;
  while (deep.size() < 240) deep += "$date/";
  const struct {
    FlightTarget target;
    const char* message;
  } cases[] = {
      {{.path = folder.File("none")}, "There is no folder "},
      {{.path = folder.File("none/$date")}, "There is no folder "},
      {{.path = deep}, "Too long file name"},
      {{.kind = Kind::kFile, .path = folder.File("there.kml")}, "exists already"},
      {{.kind = Kind::kFile, .path = folder.File("a.gpx")}, "Tracks cannot be written as"},
      {{.kind = Kind::kFile, .path = folder.File("none/a.kml")}, "There is no folder "},
  };
  for (const auto& c : cases) {
    request.target = c.target;
    recorder.messages.clear();
    EXPECT_FALSE(Run().done);
    EXPECT_TRUE(Said(c.message)) << c.message;
  }
  EXPECT_EQ(bench.opens, 0U);
}

// A folder of that day is made, with what is below it.
TEST_F(DownloadFlightsTest, WhatCannotBeSavedWhereItShouldIsRescued) {
  request.target.path = folder.File("$date/igc");
  const Texts in_place = {AsFolder(folder.File("20170427/igc")) + "2017-04-27-xxx-123-01.igc"};
  ASSERT_EQ(Run().written, in_place);
  // Nothing can be written to a file's place by then, and the first rescue has the day's first
  // name.
  WriteText(folder.File("20170428"), "");
  std::filesystem::create_directory(folder.File("a.kml"));
  std::filesystem::create_directory(folder.File("kept"));
  WriteText(folder.File("kept/2017-04-27-xxx-123-01.igc"), "");
  std::string later = newest;
  later.replace(later.find("2704"), 2, "28");
  simulator.flights.push_back(flytec_simulator::FlightFromIgc(later));
  const TimeFilter part = {.start_s = 12 * 3600 + 12, .stop_s = 12 * 3600 + 20};
  const struct {
    std::vector<uint32_t> flights;
    FlightTarget target;
    const char* rescued_as;
    const char* message;
  } cases[] = {
      {{3}, {.path = folder.File("$date")}, "2017-04-28-xxx-123-01.igc", "Error making folder\n"},
      {{1},
       {.kind = Kind::kFile, .path = folder.File("a.kml"), .overwrite = true, .filter = part},
       "2017-04-27-xxx-123-02.igc",
       "File write error\n"},
  };
  for (const auto& c : cases) {
    Choose(c.flights);
    request.target = c.target;
    defaults.rescue_folders = {folder.File("none"), folder.File("kept")};
    const DownloadFlightsResult result = Run();
    EXPECT_FALSE(result.done);
    ASSERT_EQ(result.written, Texts{AsFolder(folder.File("kept")) + c.rescued_as});
    EXPECT_EQ(ReadText(result.written[0]), c.flights[0] == 1 ? newest : later);
    EXPECT_TRUE(Said(c.message) && Said("saved as " + result.written[0] + " instead"));
    defaults.rescue_folders.pop_back();
    EXPECT_TRUE(Run().written.empty());
    EXPECT_TRUE(Said("cannot be saved in these folders either:\n" + folder.File("none")));
  }
}

TEST_F(DownloadFlightsTest, AFailureKeepsTheOldFlightAndWhatArrivedWhole) {
  ReplaceFlight(document, {.points = {{.time = 77}}}, {}, false, "");
  Choose({3});
  EXPECT_FALSE(Run().done);
  EXPECT_EQ(recorder.messages.back(), "Select track: There is no track 3 in the list");

  simulator.flights[1].igc_text = "nonsense\r\n";
  Choose({1, 2});
  EXPECT_EQ(Run().written, Texts{AsFolder(folder.File(".")) + "2017-04-27-xxx-123-01.igc"});
  request.join = true;
  EXPECT_EQ(Run().written, Texts{AsFolder(folder.File(".")) + "2017-04-27-xxx-123-02.igc"});
  request.target = {.kind = Kind::kFile, .path = folder.File("joined.kml")};
  EXPECT_EQ(Run().written, Texts{folder.File("joined-part.kml")});
  // Each try has a file of its own.
  request.join = false;
  simulator.manners.cut_at = 600;
  Choose({1});
  for (const char* name : {"a-incomplete.igc", "a-incomplete-2.igc"}) {
    request.target.path = folder.File("a.igc");
    EXPECT_EQ(Run().written, Texts{folder.File(name)});
  }
  request.instrument.protocol_type = kFlymaster;
  EXPECT_FALSE(Run().done);
  EXPECT_EQ(recorder.messages.back(), "GPS access: Unsupported access function");
  EXPECT_EQ(FlightPoints(), 1U);
  EXPECT_EQ(UndoTitle(document), "");
}

TEST_F(DownloadFlightsTest, ListsTheFlightsOverAPortThatIsFound) {
  bench.ports = {{.number = 1, .name = "other"}, {.number = 2, .name = "port1"}};
  const auto result = RunToEnd<FlightListResult>(
      [&](auto end) { ReadFlightList(session, {.protocol_type = kFlytec}, end); });
  EXPECT_TRUE(result.done);
  EXPECT_EQ(result.list.size(), 2U);
  EXPECT_EQ(result.identity.description, "6030 SN01001 SW3.30");
}

}  // namespace
}  // namespace skyhaul
