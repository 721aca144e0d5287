#include "commands/places.h"

#include "tests/commands/session_bench.h"

namespace skyhaul {
namespace {

class PlacesTest : public SessionBench {
 protected:
  // Writes a file and uploads it, its kind told by its extension.
  UploadResult Upload(const std::string& name, const std::string& text,
                      UploadRequest request = {}) {
    WriteText(folder.File(name), text);
    request.instrument = flytec;
    request.path = folder.File(name);
    return RunToEnd<UploadResult>([&](auto end) {
      name.ends_with(".txt") ? UploadAirspaces(session, request, end)
                             : UploadWaypoints(session, request, end);
    });
  }

  DownloadWaypointsResult Download(const std::string& name, const std::string& keyword = "") {
    return RunToEnd<DownloadWaypointsResult>([&](auto end) {
      DownloadWaypoints(session,
                        {.instrument = flytec, .path = folder.File(name), .keyword = keyword}, end);
    });
  }
};

const char* const kCup =
    "name,code,country,lat,lon,elev,style,rwdir,rwlen,freq,desc\r\n"
    "\"Urthaler Hof\",\"URT062\",DE,4743.564N,01121.571E,620.0m,1,,,,\r\n"
    "\"Santa Elena\",\"STAELENA\",CO,0613.000S,07530.000W,2400.0m,1,,,,\r\n";

const char* const kAirspaces =
    "AC D\r\nAN Innsbruck\r\nAL GND\r\nAH FL 125\r\n"
    "V X=47:10:00 N 011:04:42 E\r\nDC 5\r\n\r\n"
    "AC R\r\nAN Points\r\nAL GND\r\nAH 3000ft MSL\r\n"
    "DP 47:00:00 N 011:00:00 E\r\nDP 47:10:00 N 011:00:00 E\r\nDP 47:00:00 N 011:10:00 E\r\n";

TEST_F(PlacesTest, WaypointsGoUpAndComeDownAgain) {
  UploadResult sent = Upload("a.cup", kCup);
  EXPECT_TRUE(sent.done);
  EXPECT_EQ(sent.sent, 2U);
  EXPECT_EQ(sent.verified, 2U);
  EXPECT_EQ(document.lists.waypoints->size(), 2U);
  EXPECT_FALSE(Said("characters")) << "both names went whole, but a change was reported";

  const DownloadWaypointsResult result = Download("b.wpt", "geo");
  EXPECT_TRUE(result.done);
  EXPECT_EQ(result.written, Texts{folder.File("b.wpt")});
  EXPECT_EQ(ReadText(folder.File("b.wpt")).find("$FormatGEO"), 0U);
  EXPECT_EQ(document.lists.waypoints->at(0).description, "Urthaler Hof");
  EXPECT_EQ(document.State(ListKind::kWaypoints).source.origin, Source::Origin::kInstrument);

  EXPECT_FALSE(Download("b.wpt").done);
  EXPECT_TRUE(Said("exists already"));
  simulator.waypoints.clear();
  EXPECT_FALSE(Download("c.wpt").done);
  EXPECT_EQ(recorder.messages.back(),
            "Read GPS waypoints: The instrument sent no waypoints: its memory is empty, or it did "
            "not answer");
  EXPECT_EQ(document.lists.waypoints->size(), 2U);

  // Without a path the document's own list goes.
  sent = RunToEnd<UploadResult>(
      [&](auto end) { UploadWaypoints(session, {.instrument = flytec}, end); });
  EXPECT_EQ(sent.sent, 2U);
  sent = RunToEnd<UploadResult>(
      [&](auto end) { UploadAirspaces(session, {.instrument = flytec}, end); });
  EXPECT_FALSE(sent.done);
  EXPECT_TRUE(Said("There are no airspaces to send"));
}

TEST_F(PlacesTest, WhatAnInstrumentCannotHoldIsNamedAndTheRestIsSent) {
  const UploadResult waypoints =
      Upload("a.cup",
             "name,code,country,lat,lon,elev,style,rwdir,rwlen,freq,desc\r\n"
             "\"Startplatz Niesen Nord oben\",,CH,4638.000N,00739.000E,2300.0m,1,,,,\r\n"
             "\"Date line\",,FJ,1700.000S,18000.000E,10.0m,1,,,,\r\n");
  EXPECT_FALSE(waypoints.done);
  EXPECT_EQ(waypoints.sent, 1U);
  EXPECT_EQ(waypoints.total, 2U);
  EXPECT_TRUE(Said("1 names were changed to fit 17 characters"));
  EXPECT_TRUE(Said("Waypoint Date line lies where the instrument knows no position"));

  const UploadResult airspaces = Upload("a.txt", std::string(kAirspaces) +
                                                     "\r\nAC D\r\nAN Tiny\r\nAL GND\r\nAH FL 65\r\n"
                                                     "V X=47:00:00 N 011:00:00 E\r\nDC 0.0001\r\n");
  EXPECT_FALSE(airspaces.done);
  EXPECT_EQ(airspaces.sent, 2U);
  EXPECT_TRUE(Said("CTR Tiny has a radius"));
}

TEST_F(PlacesTest, DamagedAirspacesStayBehind) {
  const std::string broken = "AC R\r\nAN Broken\r\nDP 47:99 N 011:00:00 E\r\n";
  const UploadResult result = Upload("a.txt", broken + kAirspaces);
  EXPECT_FALSE(result.done);
  EXPECT_EQ(result.sent, 2U);
  EXPECT_EQ(result.total, 3U);
  EXPECT_TRUE(Said("Write CTR: Airspace Broken is damaged and left out\nLine 3: position not"));
  EXPECT_EQ(simulator.airspaces.size(), 2U);
  bench.opens = 0;
  EXPECT_FALSE(Upload("b.txt", broken).done);
  EXPECT_EQ(bench.opens, 0U);
}

TEST_F(PlacesTest, AirspaceIsSentUnlessTheInstrumentRefuses) {
  EXPECT_TRUE(Upload("a.txt", kAirspaces).done);
  ASSERT_EQ(simulator.airspaces.size(), 2U);
  EXPECT_EQ(simulator.airspaces[0].remark, "D GND-FL125      ");
  EXPECT_EQ(simulator.airspaces[0].number, "2000");
  EXPECT_TRUE(Said("CTR transfer ok"));
  EXPECT_EQ(Upload("a.txt", kAirspaces, {.verify = false, .warning_m = 500}).verified,
            std::nullopt);
  EXPECT_EQ(simulator.airspaces[1].number, "0500");
  EXPECT_EQ(document.lists.airspaces->at(0).warning_m, std::nullopt) << "of this upload only";
  simulator.refusal = flytec_simulator::Refusal::kMemory;
  EXPECT_FALSE(Upload("a.txt", kAirspaces).done);
  EXPECT_TRUE(Said("No further memory"));
}

TEST_F(PlacesTest, WrongFilesSayWhatTheyLookLike) {
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
    const UploadRequest request = {.instrument = flytec, .path = folder.File(c.name)};
    EXPECT_FALSE(
        RunToEnd<UploadResult>([&](auto end) { UploadAirspaces(session, request, end); }).done);
    EXPECT_TRUE(Said(c.message)) << c.message;
  }
  EXPECT_EQ(bench.opens, 0U) << "the port need not be opened";
  EXPECT_EQ(document.lists.waypoints, nullptr);
}

}  // namespace
}  // namespace skyhaul
