#include <algorithm>

#include "commands/download_flights.h"
#include "commands/places.h"
#include "instruments/anonymise.h"
#include "instruments/replay.h"
#include "tests/commands/session_bench.h"
#include "transport/trace_log.h"

namespace skyhaul {
namespace {

class ConversationsTest : public SessionBench {
 protected:
  // A fresh bench with an instrument that says what the recorded one said.
  void Play(const std::string& conversation) {
    Reset();
    std::vector<SpokenLine> lines;
    std::string message;
    ASSERT_GT(ReadConversation(conversation, lines, message), 0) << message;
    replay = {.turns = TurnsOf(lines)};
    instrument = MakeReplayInstrument(replay);
  }

  std::vector<std::string> DownloadNewest() {
    const DownloadFlightsRequest request = {
        .instrument = flytec,
        .flights = {.how = FlightChoice::How::kNewest},
        .target = {.path = folder.File("."), .overwrite = true}};
    return RunToEnd<DownloadFlightsResult>(
               [&](auto end) { DownloadFlights(session, request, end); })
        .written;
  }

  Replay replay;
};

// How many fixes each file has, a last line that is cut off not counted, and what its name says.
std::string Fixes(const std::vector<std::string>& written) {
  std::string fixes;
  for (const std::string& path : written) {
    std::string text = ReadText(path);
    text.resize(text.rfind('\n'));
    size_t count = 0;
    for (size_t at = 0; (at = text.find("\nB", at) + 1) != 0;) ++count;
    fixes += std::to_string(count) + " fixes";
    if (path.find("-incomplete") != std::string::npos) fixes += ", incomplete";
  }
  return fixes;
}

enum class Command { kDownload, kUpload };

TEST_F(ConversationsTest, ComeOutAsTheyShould) {
  const struct {
    const char* name;
    Command command;
    const char* outcome;
  } cases[] = {
      {"whole_flight", Command::kDownload, "24 fixes"},
      {"stalled_flight", Command::kDownload, "10 fixes, incomplete"},
      {"late_identification", Command::kDownload, "24 fixes"},
      {"waypoint_upload", Command::kUpload, "3 of 3 waypoints, 3 verified"},
  };
  WriteText(folder.File("up.cup"),
            "name,code,country,lat,lon,elev,style,rwdir,rwlen,freq,desc\n"
            "Start Nord,,,4730.000N,01112.000E,1200m\n"
            "Boje,,,4731.500N,01114.250E,850m\nLandung,,,4729.100N,01110.900E,610m\n");
  for (const auto& c : cases) {
    Play(ReadText(std::string(SKYHAUL_CONVERSATIONS "/") + c.name + ".txt"));
    if (c.command == Command::kDownload) {
      EXPECT_EQ(Fixes(DownloadNewest()), c.outcome) << c.name;
      continue;
    }
    const auto sent = RunToEnd<UploadResult>([&](auto end) {
      UploadWaypoints(session, {.instrument = flytec, .path = folder.File("up.cup")}, end);
    });
    EXPECT_EQ(std::to_string(sent.sent) + " of " + std::to_string(sent.total) + " waypoints, " +
                  std::to_string(sent.verified.value_or(0)) + " verified",
              c.outcome);
  }
}

// What the program traced of its own job, as it is and without the names.
TEST_F(ConversationsTest, ATracedJobIsPlayedBack) {
  simulator.flights = {flytec_simulator::FlightFromIgc(IgcOfHour("12"))};
  std::string trace;
  StartTraceLog(
      {.context = &trace,
       .write = [](void* context,
                   std::string_view line) { *static_cast<std::string*>(context) += line; },
       .settle = [](void*) {}});
  Reset();
  ASSERT_EQ(DownloadNewest().size(), 1U);
  EndTraceLog();
  EXPECT_NE(trace.find("port1 at 57600 baud, XON/XOFF\n"), std::string::npos) << trace;
  const uint64_t took_ns = bench.now_ns;

  Play(trace);
  EXPECT_EQ(ReadText(DownloadNewest().at(0)), IgcOfHour("12"));
  EXPECT_EQ(replay.next, replay.turns.size());
  EXPECT_NEAR(static_cast<double>(bench.now_ns), static_cast<double>(took_ns), 0.5e9);

  std::string anonymous;
  std::string message;
  ASSERT_EQ(AnonymiseConversation(trace, anonymous, message), 3) << anonymous;
  Play(anonymous);
  EXPECT_EQ(Fixes(DownloadNewest()), "30 fixes");
  EXPECT_EQ(document.lists.flight->instrument_igc.text.find("HENDRIX"), std::string::npos);
  EXPECT_EQ(document.identity.owner, "6030: XXXXXXXXX XXXXX");
}

}  // namespace
}  // namespace skyhaul
