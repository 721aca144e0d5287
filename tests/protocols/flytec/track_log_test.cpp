#include "protocols/flytec/track_log.h"

#include <algorithm>

#include "protocols/flytec/requests.h"
#include "protocols/flytec/track_receiver.h"
#include "tests/protocols/flytec/flytec_bench.h"

namespace skyhaul::flytec {
namespace {

// A flight whose fixes are a second apart from so many minutes after midnight on.
std::string Igc(int minute, int fixes, const char* security = "G0123456789ABCDEF\r\n") {
  std::string text = "AXSH000 6030\r\nHFDTE270417\r\n";
  for (int i = 0; i < fixes; ++i) {
    const int now = minute + i / 60;
    char line[64];
    std::snprintf(line, sizeof line, "B%02d%02d%02d4743%03dN01121571EA0062000640\r\n", now / 60,
                  now % 60, i % 60, i);
    text += line;
  }
  return text + security;
}

constexpr int kNoon = 12 * 60;
constexpr const char* kTooOld = "Read GPS track log: Track log 101 is too old to be requested";

// A bench with two flights aboard, the newest first.
struct TwoFlights : FlytecBench {
  TwoFlights() {
    script.answers["$PBRTL,"] = {ListLine(0, "12:30:00", "00:00:04", 2) +
                                 ListLine(1, "12:00:00", "00:00:02", 2)};
    script.answers["$PBRTR,00"] = {"\x13" + newest + "\x11"};
    script.answers["$PBRTR,01"] = {"\x13" + oldest + "\x11"};
    script.answers["$PBRIGC,"] = {"\x13" + oldest + "\x11"};
  }
  std::string newest = Igc(kNoon + 30, 5);
  std::string oldest = Igc(kNoon, 3);
};

TEST(TrackLogJob, DownloadsTheChosenFlightToTheByte) {
  TwoFlights b;
  const std::string text = Igc(kNoon + 30, 350);
  b.script.answers["$PBRTR,00"] = {"\x13" + text + "\x11"};
  b.script.answers["$PBRTL,"] = {ListLine(0, "12:30:00", "00:06:40", 2) + ListLine(1)};
  ASSERT_EQ(TrackLogJob(b.job), 350);
  ASSERT_EQ(b.job.data.flights.size(), 1U);
  const Flight& track = b.job.data.flights[0];
  EXPECT_EQ(track.instrument_igc.text, text);
  EXPECT_EQ(track.instrument_igc.manufacturer + track.instrument_igc.serial, "XSH000");
  EXPECT_EQ(track.points.size(), 350U);
  EXPECT_EQ(b.bench.written, "\x11$PBRSNP,*21\r\n\x11$PBRTL,*74\r\n\x11$PBRTR,00*6A\r\n");
  EXPECT_EQ(b.recorder.statuses,
            (Texts{"Product data read", "2 tracks in track list found", "Requesting track log 1",
                   "Receiving track log", "350 points received"}));
  EXPECT_EQ(b.recorder.progress,
            (Texts{"Requesting product info (15)", "6030, SN01001, SW3.30",
                   "Track position 1 (0m 0s)", "Track position 101 (1m 40s)",
                   "Track position 201 (3m 20s)", "Track position 301 (5m 0s)"}));
  EXPECT_EQ(b.recorder.percents, (std::vector<int>{-1, -1, 0, 25, 50, 75}));
  EXPECT_TRUE(b.recorder.messages.empty());
  // 200 opening, 1000 after identification, 1000 and 2000 silence, 500 before the request.
  EXPECT_NEAR(b.Waited_ms(), 4700, 120);
}

TEST(TrackLogJob, DownloadsTheFlightSelectedOnTheInstrument) {
  TwoFlights b;
  b.job.parameter = kCurrentTrack;
  b.job.join_tracks = true;  // with nothing
  ASSERT_EQ(TrackLogJob(b.job), 3);
  EXPECT_EQ(b.job.data.flights[0].instrument_igc.text, b.oldest);
  EXPECT_EQ(b.bench.written, "\x11$PBRSNP,*21\r\n\x11$PBRIGC,*21\r\n");
  EXPECT_TRUE(Has(b.recorder.statuses,
                  "The flight selected on the instrument is of 2017-04-27 12:00:00 UTC and "
                  "00:00:02 long; there is no list to compare it with"));
  EXPECT_EQ(TrackRequest(99), "\x11$PBRTR,99*6A\r\n");
}

TEST(TrackLogJob, SeveralFlightsAreJoinedInTheOrderOfTimeWithoutOverlapOrLongGap) {
  constexpr const char* kOverlap = "Read GPS track log: Overlapping track start/stop times";
  constexpr const char* kGap = "Read GPS track log: Time gap between tracks greater than 3600 s";
  const std::tuple<int, int, Texts> cases[] = {
      {kNoon + 29, 61, {}},  // ends in the second in which the other starts
      {kNoon + 29, 62, {kOverlap}},
      {kNoon - 31, 61, {}},  // ends an hour before
      {kNoon - 31, 60, {kGap}},
  };
  for (const auto& [minute, fixes, messages] : cases) {
    TwoFlights b;
    b.recorder.choice = {0, 1};
    b.job.join_tracks = true;
    b.script.answers["$PBRTR,01"] = {Igc(minute, fixes)};
    b.script.answers["$PBRTL,"] = {
        ListLine(0, "12:30:00", "00:00:04", 2) +
        ListLine(1, minute < kNoon ? "11:29:00" : "12:29:00", "00:00:59", 2)};
    EXPECT_EQ(TrackLogJob(b.job), messages.empty() ? fixes + 5 : -1);
    EXPECT_EQ(b.recorder.messages, messages);
    EXPECT_EQ(b.job.data.flights.size(), messages.empty() ? 1U : 2U);
    if (!messages.empty()) continue;
    const Flight& flight = b.job.data.flights[0];
    EXPECT_TRUE(std::ranges::is_sorted(flight.points, {}, &TrackPoint::time));
    EXPECT_EQ(flight.points[static_cast<size_t>(fixes)].segment_start, 1U);
    EXPECT_EQ(flight.instrument_igc.text, "") << "no security covers both";
  }
}

TEST(TrackLogJob, AFlightIsWholeOrRequestedOnceMoreOrNamed) {
  const std::string whole = Igc(kNoon + 30, 350);
  const auto with = [&](size_t at, const std::string& text) {
    return whole.substr(0, at) + text + whole.substr(at);
  };
  const size_t b9 = whole.find("B123009");
  const std::string any = with(whole.find("HFDTE"), "L" + std::string(80, 'x') + "\r\nZ\r\n");
  // Answers, what is kept (empty: whole), what is missing, the message's first line.
  const std::tuple<Texts, std::string, std::string, std::string> cases[] = {
      {{whole}, whole, "", ""},
      {{any}, any, "", ""},
      {{Sentence("PBRTL,1,0") + whole}, whole, "", ""},
      {{whole.substr(100), whole}, whole, "", ""},
      {{whole.substr(0, b9 + 20)},
       whole.substr(0, b9 + 20),
       "00:00:08 of 00:06:40 received, line 12 is cut, its security record is missing",
       "No G-records found\n"},
      {{whole.substr(0, b9), whole.substr(0, b9 - 50)},
       whole.substr(0, b9),
       "00:00:08 of 00:06:40 received, its security record is missing",
       "No G-records found\n"},
      {{whole.substr(0, whole.size() - 1)},
       whole.substr(0, whole.size() - 1),
       "00:05:49 of 00:06:40 received, line 353 is cut, its security record is missing",
       "No G-records found\n"},
      {{whole.substr(14)},
       whole.substr(14),
       "00:05:49 of 00:06:40 received, its beginning is missing",
       ""},
      {{with(b9, "@\r\n")},
       with(b9, "@\r\n"),
       "00:05:49 of 00:06:40 received, line 12 is damaged",
       "E205 Bad record type (40)\n"},
      {{with(b9, "L" + std::string(81, 'x') + "\r\nB12\r\n")},
       with(b9, "L" + std::string(81, 'x') + "\r\nB12\r\n"),
       "00:05:49 of 00:06:40 received, line 12 is damaged and 1 more",
       "E207 Too long sentence\n"},
      {{with(b9, "AX\r\n")},
       with(b9, "AX\r\n"),
       "00:05:49 of 00:06:40 received, line 12 is damaged, another flight is in it",
       "E206 Format error 1\n"},
      {{Igc(kNoon + 20, 350)},
       Igc(kNoon + 20, 350),
       "00:05:49 of 00:06:40 received, it starts at 2017-04-27 12:20:00 and the list says "
       "2017-04-27 12:30:00",
       ""},
      // Local time in the list, and a flight that is longer than listed; but not another flight.
      {{Igc(kNoon - 90, 900)}, Igc(kNoon - 90, 900), "", ""},
      {{Igc(kNoon, 900)},
       Igc(kNoon, 900),
       "00:14:59 of 00:06:40 received, it starts at 2017-04-27 12:00:00 and the list says "
       "2017-04-27 12:30:00",
       ""},
      {{whole + whole},
       whole + whole,
       "00:05:49 of 00:06:40 received, another flight is in it",
       ""},
      // Shorter than listed twice alike is whole, and otherwise not.
      {{Igc(kNoon + 30, 100)}, Igc(kNoon + 30, 100), "", ""},
      {{Igc(kNoon + 30, 100), Igc(kNoon + 30, 99)},
       Igc(kNoon + 30, 100),
       "00:01:39 of 00:06:40 received",
       ""},
      {{"AXSH000\r\nG00\r\n"},
       "",
       "00:00:00 of 00:06:40 received, no position in it",
       "0 points received\n"},
  };
  for (const auto& [answers, text, missing, first_line] : cases) {
    TwoFlights b;
    b.script.answers["$PBRTL,"] = {ListLine(0, "12:30:00", "00:06:40", 2) +
                                   ListLine(1, "12:00:00", "00:00:02", 2)};
    b.script.answers["$PBRTR,00"] = answers;
    b.recorder.choice = {0, 1};
    EXPECT_EQ(TrackLogJob(b.job) >= 0, missing.empty()) << missing;
    std::string message = "Read GPS track log: ";
    message.append(first_line).append("Flight 1 is incomplete: ").append(missing);
    EXPECT_EQ(b.recorder.messages, missing.empty() ? Texts{} : Texts{message});
    const std::vector<Flight>& flights = b.job.data.flights;
    ASSERT_EQ(flights.size(), text.empty() ? 1U : 2U);
    EXPECT_EQ(flights.back().instrument_igc.text, b.oldest) << "the other one is fetched";
    if (text.empty()) continue;
    EXPECT_EQ(flights[0].instrument_igc.text, text) << missing;
    EXPECT_EQ(flights[0].missing, missing);
  }
}

// The counters are the only sign of a byte that the system has lost: the text may still be read.
TEST(TrackLogJob, ACountedLossMakesAFlightSuspect) {
  TwoFlights b;
  ASSERT_EQ(TrackLogJob(b.job), 5);
  const size_t last_fix = b.bench.received - 60;
  TwoFlights lossy;
  lossy.bench.fault = {.kind = FaultKind::kOverrun, .at = last_fix};
  EXPECT_EQ(TrackLogJob(lossy.job), 5);
  EXPECT_EQ(lossy.script.asked["$PBRTR,00"], 2U);
}

TEST(AllTracksJob, ReadsEveryTrackOfTheList) {
  TwoFlights b;
  b.script.answers["$PBRTL,"][0] += ListLine(100, "11:00:00", "00:00:04", 3);
  ASSERT_EQ(AllTracksJob(b.job), 8);
  EXPECT_EQ(b.recorder.messages, Texts{kTooOld});
  ASSERT_EQ(b.job.data.flights.size(), 2U);
  EXPECT_EQ(b.job.data.flights[1].instrument_igc.text, b.oldest);
  for (const char* status : {"Reading track log 1", "Analysing track log 2", "8 points received"}) {
    EXPECT_TRUE(Has(b.recorder.statuses, status)) << status;
  }
  EXPECT_EQ(b.recorder.statuses.back(), "Downloading completed");

  TwoFlights broken;
  broken.script.answers["$PBRTR,01"] = {"nonsense"};
  EXPECT_LT(AllTracksJob(broken.job), 0);
  EXPECT_EQ(broken.job.data.flights.size(), 1U);
}

TEST(TrackLogJob, AFlightThatIsTooOldCannotBeRequested) {
  TwoFlights b;
  b.script.answers["$PBRTL,"][0] += ListLine(100);
  b.recorder.choice = {100};
  EXPECT_LT(TrackLogJob(b.job), 0);
  EXPECT_EQ(b.recorder.messages, Texts{kTooOld});
  EXPECT_EQ(b.script.requests.size(), 2U);
}

TEST(TrackLogJob, ClientsHearOfPositionsWhileTheyArrive) {
  TwoFlights b;
  b.job.reports = {.client = "me", .interval_s = 2};
  ASSERT_EQ(TrackLogJob(b.job), 5);
  EXPECT_EQ(b.bench.told.size(), 3U);
  EXPECT_EQ(b.bench.told[0], "me: Pos=47.716667,11.359517,640");
}

TEST(TrackReceiver, AnInstrumentThatDoesNotStopIsCutOff) {
  const std::string flight = Igc(kNoon, 5);
  const std::tuple<size_t, size_t, const char*> cases[] = {
      {flight.size(), 5, ""},
      {flight.size() - 1, 5, "E200 Track log memory allocation"},
      {flight.size(), 4, "E201 Track log memory allocation"},
  };
  for (const auto& [most_text, most_positions, message] : cases) {
    TrackReceiver receiver;
    receiver.most_text = most_text;
    receiver.most_positions = most_positions;
    std::string messages;
    for (const char c : flight) {
      messages += TrackFaultMessage(FeedTrackByte(receiver, static_cast<uint8_t>(c)), 0);
      if (!messages.empty()) break;
    }
    EXPECT_EQ(messages, message);
  }
}

}  // namespace
}  // namespace skyhaul::flytec
