#include <algorithm>

#include "core/time_scale.h"
#include "protocols/flytec/ctr_list.h"
#include "protocols/flytec/track_list.h"
#include "protocols/flytec/track_list_line.h"
#include "protocols/flytec/track_log.h"
#include "protocols/flytec/waypoint_list.h"
#include "tests/protocols/flytec/flytec_bench.h"

namespace skyhaul::flytec {
namespace {

// One of the jobs that read: what it asks for, and the title of its messages.
struct Reading {
  JobProcedure procedure;
  const char* request;
  const char* title;
};
constexpr Reading kList = {FlightListJob, "$PBRTL,", "Read GPS track list: "};
constexpr Reading kFlight = {TrackLogJob, "$PBRTR,00", "Read GPS track log: "};
constexpr Reading kCtrs = {ReadCtrJob, "$PBRCTR,", "Read CTR list: "};
constexpr Reading kWaypoints = {ReadWaypointsJob, "$PBRWPS,", "Read GPS waypoints: "};

TEST(Reading, AListEndsWithItsSilenceOrItsLastLine) {
  const std::tuple<Reading, std::string, const char*, Texts, double> cases[] = {
      {kList,
       // A late answer to an earlier request, the last index that is kept, one that is not, and one
       // that comes twice.
       Sentence("PBRSNP,6030,P,01001,3.30") + ListLine(3, "12:30:00", "00:00:04", 4) +
           ListLine(254) + ListLine(255) + ListLine(0) + ListLine(3),
       "$PBRTL,*74",
       {"3 tracks in track list found"},
       1000},
      {kCtrs,
       Sentence("PBRSNP,6030,P,01001,3.30") + kOneCtr + kOneCtr + kListEnd,
       "$PBRCTR,*29",
       {"Receiving CTR list", "Receiving CTR list", "2 CTR(s) received"},
       0},
      {kWaypoints,
       Sentence("PBRTL,1,0") + WaypointLine(),
       "$PBRWPS,*38",
       {"1 waypoints received"},
       3000},
  };
  for (const auto& [reading, answer, request, statuses, silence_ms] : cases) {
    FlytecBench b;
    b.script.answers[reading.request] = {"\x13" + answer + "\x11"};
    EXPECT_EQ(reading.procedure(b.job), statuses.back()[0] - '0');
    b.recorder.statuses.erase(b.recorder.statuses.begin());  // "Product data read"
    EXPECT_EQ(b.recorder.statuses, statuses);
    EXPECT_EQ(b.bench.written, "\x11$PBRSNP,*21\r\n\x11" + std::string(request) + "\r\n");
    EXPECT_TRUE(b.recorder.messages.empty());
    EXPECT_TRUE(std::ranges::is_sorted(b.job.data.track_list, {}, &TrackListEntry::index));
    // 200 opening, 1000 after identification, the silence.
    EXPECT_NEAR(b.Waited_ms(), 1200 + silence_ms, 80);
  }
}

TEST(Reading, EachFailureHasItsMessageAndDeliversNothing) {
  const std::string waypoint = WaypointLine();
  std::string endless;
  for (int n = 0; n < 10'001; ++n) endless += waypoint;
  const std::tuple<Reading, std::string, Fault, const char*> cases[] = {
      {kList, "$PBRTL,1\r\n", {}, "NMEA line parse error"},
      {kList, ListLine(0), FailWrite(1), "E500 COM port write error"},
      {kList, ListLine(0), Unplug(60), "E503 COM port read error"},
      {kFlight, "AXSH000\r\n", FailWrite(2), "E202 COM port write error"},
      {kFlight, "AXSH000\r\n", Unplug(105), "E203 COM port read error"},
      {kCtrs, kListEnd, FailWrite(1), "E700 COM port write error"},
      {kCtrs, kListEnd, Unplug(50), "E701 COM port read error"},
      {kCtrs, kOneCtr + "$" + std::string(82, 'x'), {}, "E703 Format error 1"},
      {kCtrs, kOneCtr + Sentence("PBRANS,2"), {}, "E702 Format error 2"},
      {kCtrs, kOneCtr + kCtrName + kListEnd, {}, "E702 Format error 3"},
      {kWaypoints, waypoint, FailWrite(1), "E304 COM port write error"},
      {kWaypoints, waypoint, Unplug(60), "E301 COM port read error"},
      {kWaypoints, waypoint + "$PBRWPS,x", {}, "E302 Format error 2"},
      {kWaypoints, waypoint + "$PBRWPS,47", {}, "The waypoint list broke off inside a waypoint"},
      {kWaypoints, endless, {}, "E303 Waypoint memory allocation"},
  };
  for (const auto& [reading, answer, fault, message] : cases) {
    FlytecBench b;
    b.script.answers[reading.request] = {answer};
    b.bench.fault = fault;
    EXPECT_LT(reading.procedure(b.job), 0) << message;
    EXPECT_EQ(b.recorder.messages, Texts{reading.title + std::string(message)});
    const JobData& data = b.job.data;
    EXPECT_TRUE(data.flights.empty() && data.waypoints.empty() && data.airspaces.empty());
  }
}

TEST(TrackListLine, EachFieldHasItsMessage) {
  constexpr const char* kSound[] = {"$PBRTL", "07", "01", "27.04.17", "15:29:56", "00:04:55*7D"};
  const std::tuple<size_t, const char*, Texts> cases[] = {
      {0, "Bad NMEA identifier", {"$PBRTR"}},
      {1, "Bad track count parameter", {"x"}},
      {2, "Bad track index parameter", {"1x"}},
      {3, nullptr, {"01.01.17", "31.12.17"}},
      {3,
       "Bad track date parameter",
       {"00.04.17", "32.04.17", "27.00.17", "27.13.17", "27.04", "27.04.2017"}},
      {4, nullptr, {"00:00:00", "23:59:59"}},
      {4, "Bad track time parameter", {"24:29:56", "15:60:56", "15-29-56"}},
      {5, nullptr, {"00:00:00", "99:59:59", "00:04:55,1,2,3,4,5*00"}},
      {5, "Bad track duration parameter", {"00:04:60", "*7D"}},
  };
  for (const auto& [at, message, texts] : cases) {
    for (const std::string& text : texts) {
      std::string line;
      for (size_t i = 0; i < std::size(kSound); ++i) {
        line += (i == 0 ? "" : ",") + (i == at ? text : kSound[i]);
      }
      TrackListEntry entry;
      uint32_t announced = 0;
      EXPECT_STREQ(ParseTrackListLine(line, entry, announced), message) << line;
    }
  }
  const std::string line = "$PBRTL,07,01,27.04.17,15:29:56,00:04:55*7D";
  TrackListEntry entry;
  uint32_t announced = 0;
  EXPECT_EQ(ParseTrackListLine(line, entry, announced), nullptr);
  EXPECT_EQ(std::tie(announced, entry.index, entry.start_time, entry.duration_s, entry.line),
            std::tuple(7U, 1U, TimeFromCalendar({2017, 4, 27, 15, 29, 56}), 295U, line));
}

TEST(TrackList, TheGateRefusesWithoutAWord) {
  for (const auto& [device, result] :
       {std::pair{"COMPETINO", kNoTrackList}, {"C0MPETINO", kUnknownModel}}) {
    FlytecBench b(device, "1.13");
    EXPECT_EQ(FlightListJob(b.job), result);
    EXPECT_EQ(b.script.requests.size(), 1U);
    EXPECT_TRUE(b.recorder.messages.empty());
  }
}

TEST(TrackList, IsAskedForOnceMoreAndNeverPassesForWholeOrEmpty) {
  const auto line = [](uint32_t index) { return ListLine(index, "12:30:00", "00:00:04", 3); };
  const std::string whole = line(0) + line(1) + line(2);
  std::string bent = whole;
  bent[bent.find("12:30")] = '0';
  const std::tuple<Texts, int, size_t, Texts> cases[] = {
      {{line(1), line(0) + line(2)}, 3, 3, {}},
      {{bent, whole}, 3, 3, {}},
      {{whole.substr(0, 20), whole}, 3, 3, {}},
      {{"", whole}, 3, 3, {}},
      {{line(0) + line(2)}, -1, 2, {"Read GPS track list: 3 flights announced, 2 received"}},
      {{bent}, -1, 2, {"Read GPS track list: 3 flights announced, 2 received"}},
      {{""},
       -1,
       0,
       {"Read GPS track list: The instrument has sent no track list: its memory is "
        "empty, or it did not answer\nIs it in its main menu? Switch it off and on, "
        "then try again"}},
      // A sum of the instrument's own is no damage.
      {{"$PBRTL,1,0,27.04.17,12:30:00,00:00:04*00\r\n"}, 1, 1, {}},
  };
  for (const auto& [answers, result, flights, messages] : cases) {
    FlytecBench b;
    b.script.answers["$PBRTL,"] = answers;
    EXPECT_EQ(FlightListJob(b.job), result);
    EXPECT_EQ(b.job.data.track_list.size(), flights);
    EXPECT_EQ(b.recorder.messages, messages);
    EXPECT_EQ(b.script.requests.size(), 3U) << "identification, and the list twice";
  }
}

}  // namespace
}  // namespace skyhaul::flytec
