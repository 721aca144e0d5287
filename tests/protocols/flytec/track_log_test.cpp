#include "protocols/flytec/track_log.h"

#include "protocols/flytec/requests.h"
#include "protocols/flytec/track_receiver.h"
#include "tests/protocols/flytec/flytec_bench.h"

namespace skyhaul::flytec {
namespace {

// A flight whose fixes are a second apart, with or without its G record.
std::string Igc(const char* hour_minute, int fixes, bool sealed = true) {
  std::string text = "AXSH000 6030\r\nHFDTE270417\r\n";
  for (int i = 0; i < fixes; ++i) {
    char line[64];
    std::snprintf(line, sizeof line, "B%s%02d4743%03dN01121571EA0062000640\r\n", hour_minute,
                  i % 60, i);
    text += line;
  }
  return sealed ? text + "G0123456789ABCDEF\r\n" : text;
}

std::string ListLine(uint32_t index, const char* start, const char* duration = "00:00:50") {
  return Sentence("PBRTL,02,0" + std::to_string(index) + ",27.04.17," + start + "," + duration);
}

// A bench with two flights aboard, the newest first.
struct TwoFlights : FlytecBench {
  TwoFlights() {
    script.answers["$PBRTL,"] = {ListLine(0, "12:30:00") + ListLine(1, "12:00:00")};
    script.answers["$PBRTR,00"] = {"\x13" + newest + "\x11"};
    script.answers["$PBRTR,01"] = {"\x13" + oldest + "\x11"};
    script.answers["$PBRIGC,"] = {"\x13" + oldest + "\x11"};
  }
  std::string newest = Igc("1230", 5);
  std::string oldest = Igc("1200", 3);
};

TEST(TrackLogJob, DownloadsTheChosenFlightToTheByte) {
  TwoFlights b;
  b.newest = Igc("1230", 50);
  b.script.answers["$PBRTR,00"] = {"\x13" + b.newest + "\x11"};
  const uint64_t start_ns = b.bench.now_ns;
  ASSERT_EQ(TrackLogJob(b.job), 50);
  ASSERT_EQ(b.job.data.flights.size(), 1U);
  const Flight& track = b.job.data.flights[0];
  EXPECT_EQ(track.instrument_igc.text, b.newest);
  EXPECT_EQ(track.instrument_igc.manufacturer, "XSH");
  EXPECT_EQ(track.instrument_igc.serial, "000");
  EXPECT_EQ(track.points.size(), 50U);
  EXPECT_EQ(b.bench.written, "\x11$PBRSNP,*21\r\n\x11$PBRTL,*74\r\n\x11$PBRTR,00*6A\r\n");
  EXPECT_EQ(b.recorder.statuses,
            (Texts{"Product data read", "2 tracks in track list found", "Requesting track log 1",
                   "Receiving track log", "50 points received"}));
  EXPECT_EQ(b.recorder.progress.back(), "Track position 1 (0m 0s)");
  EXPECT_TRUE(b.recorder.messages.empty());
  // 200 opening, 1000 after identification, 1000 and 2000 silence, 500 before the request, the
  // wire.
  const double wire_ms = static_cast<double>(b.bench.sent + b.bench.received) * 10'000 / 57600;
  EXPECT_NEAR(static_cast<double>(Elapsed_ms(b.bench, start_ns)), 4700 + wire_ms, 120);
}

TEST(TrackLogJob, ShowsEveryHundredthPositionWithItsTimeAndPercentage) {
  FlytecBench b;
  std::string text = "AXSH000\r\nHFDTE270417\r\n";
  for (int i = 0; i < 350; ++i) {
    char line[64];
    std::snprintf(line, sizeof line, "B12%02d%02d4743564N01121571EA0062000640\r\n", i / 60, i % 60);
    text += line;
  }
  b.script.answers["$PBRTL,"] = {ListLine(0, "12:00:00", "00:06:40")};
  b.script.answers["$PBRTR,00"] = {text + "G00\r\n"};
  ASSERT_EQ(TrackLogJob(b.job), 350);
  b.recorder.progress.erase(b.recorder.progress.begin(), b.recorder.progress.begin() + 2);
  EXPECT_EQ(b.recorder.progress,
            (Texts{"Track position 1 (0m 0s)", "Track position 101 (1m 40s)",
                   "Track position 201 (3m 20s)", "Track position 301 (5m 0s)"}));
  b.recorder.percents.erase(b.recorder.percents.begin(), b.recorder.percents.begin() + 2);
  EXPECT_EQ(b.recorder.percents, (std::vector<int>{0, 25, 50, 75}));
}

TEST(TrackLogJob, DownloadsTheFlightSelectedOnTheInstrument) {
  TwoFlights b;
  b.job.parameter = kCurrentTrack;
  ASSERT_EQ(TrackLogJob(b.job), 3);
  EXPECT_EQ(b.job.data.flights[0].instrument_igc.text, b.oldest);
  EXPECT_EQ(b.bench.written, "\x11$PBRSNP,*21\r\n\x11$PBRIGC,*21\r\n");
  EXPECT_EQ(TrackRequest(99), "\x11$PBRTR,99*6A\r\n");
}

TEST(TrackLogJob, SeveralFlightsComeOneByOneOrJoined) {
  for (const bool join : {false, true}) {
    TwoFlights b;
    b.recorder.choice = {1, 0};
    b.job.join_tracks = join;
    ASSERT_EQ(TrackLogJob(b.job), 8);
    ASSERT_EQ(b.job.data.flights.size(), join ? 1U : 2U);
    EXPECT_EQ(b.job.data.flights[0].instrument_igc.text, join ? "" : b.newest);
    EXPECT_EQ(b.job.data.flights.back().points.size(), join ? 8U : 3U);
  }
}

TEST(TrackLogJob, EachFailureHasItsMessage) {
  const Failure cases[] = {
      {"", {}, "0 points received"},
      {"AXSH000\r\nG00\r\n", {}, "0 points received"},
      {"@", {}, "E205 Bad record type (40)"},
      {"[", {}, "E205 Bad record type (5B)"},
      {Igc("1200", 1) + "\xff", {}, "E205 Bad record type (FF)"},
      {"L" + std::string(81, 'x'), {}, "E207 Too long sentence"},
      {"AX\r\n", {}, "E206 Format error 1"},
      {"B1200004743564N01121571EA0062000640\r\n", {}, "E206 Format error 6"},
      {Igc("1200", 5), FailWrite(2), "E202 COM port write error"},
      {Igc("1200", 5), Unplug(150), "E203 COM port read error"},
  };
  for (Failure failure : cases) {
    TwoFlights b;
    failure.message.insert(0, "Read GPS track log: ");
    ExpectFailure(b, TrackLogJob, "$PBRTR,00", failure);
  }
}

TEST(TrackLogJob, ARecordOfAnyLetterAndALineOf81CharactersAreTaken) {
  TwoFlights b;
  const std::string text = "L" + std::string(80, 'x') + "\r\nZ\r\n" + b.newest;
  b.script.answers["$PBRTR,00"] = {text};
  EXPECT_EQ(TrackLogJob(b.job), 5);
  EXPECT_EQ(b.job.data.flights[0].instrument_igc.text, text);
}

TEST(TrackLogJob, AFlightWithoutSealIsKeptAndTold) {
  TwoFlights b;
  b.script.answers["$PBRTR,00"] = {Igc("1230", 5, false)};
  EXPECT_EQ(TrackLogJob(b.job), 5);
  EXPECT_EQ(b.recorder.messages, Texts{"Read GPS track log: No G-records found"});
}

TEST(AllTracksJob, ReadsEveryTrackOfTheList) {
  TwoFlights b;
  b.script.answers["$PBRTL,"] = {ListLine(0, "12:30:00") + ListLine(1, "12:00:00") +
                                 Sentence("PBRTL,99,100,27.04.17,11:00:00,00:00:50")};
  ASSERT_EQ(AllTracksJob(b.job), 8);
  EXPECT_EQ(b.recorder.messages,
            Texts{"Read GPS track log: Track log 101 is too old to be requested"});
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

TEST(TrackLogJob, WhatCannotBeChosenOrJoinedIsTold) {
  const struct {
    std::vector<uint32_t> choice;
    const char* oldest_start;
    Texts messages;
  } cases[] = {
      {{0, 1}, "1230", {"Read GPS track log: Overlapping track start/stop times"}},
      {{0, 1}, "1129", {"Read GPS track log: Time gap between tracks greater than 3600 s"}},
      {{100}, "1200", {"Read GPS track log: Track log 101 is too old to be requested"}},
      {{}, "1200", {}},
  };
  for (const auto& c : cases) {
    TwoFlights b;
    b.recorder.choice = c.choice;
    b.job.join_tracks = true;
    b.script.answers["$PBRTR,01"] = {Igc(c.oldest_start, 3)};
    EXPECT_LT(TrackLogJob(b.job), 0);
    EXPECT_EQ(b.recorder.messages, c.messages);
    EXPECT_EQ(b.script.requests.size(), c.choice.size() == 2 ? 4U : 2U);
  }
  TwoFlights empty;
  ExpectFailure(empty, TrackLogJob, "$PBRTL,",
                {"", {}, "Read GPS track log: The instrument holds no track logs"});
}

TEST(TrackLogJob, ClientsHearOfPositionsWhileTheyArrive) {
  TwoFlights b;
  b.job.reports = {.client = "me", .interval_s = 2};
  ASSERT_EQ(TrackLogJob(b.job), 5);
  EXPECT_EQ(b.bench.told.size(), 3U);
  EXPECT_EQ(b.bench.told[0], "me: Pos=47.716667,11.359517,640");
}

TEST(TrackReceiver, AnInstrumentThatDoesNotStopIsCutOff) {
  const std::string flight = Igc("1200", 5);
  const std::tuple<size_t, size_t, const char*> cases[] = {
      {flight.size(), 5, ""},
      {flight.size() - 1, 5, "E200 Track log memory allocation"},
      {flight.size(), 4, "E201 Track log memory allocation"},
  };
  for (const auto& [most_text, most_positions, message] : cases) {
    TrackReceiver receiver;
    receiver.most_text = most_text;
    receiver.most_positions = most_positions;
    TrackFault fault = TrackFault::kNone;
    for (size_t i = 0; i < flight.size() && fault == TrackFault::kNone; ++i) {
      fault = FeedTrackByte(receiver, static_cast<uint8_t>(flight[i]));
    }
    EXPECT_EQ(TrackFaultMessage(fault, receiver.detail), message);
  }
}

}  // namespace
}  // namespace skyhaul::flytec
