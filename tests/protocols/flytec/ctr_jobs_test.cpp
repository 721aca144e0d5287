#include <cmath>

#include "instruments/flytec/flytec_simulator.h"
#include "protocols/flytec/ctr_lines.h"
#include "protocols/flytec/ctr_list.h"
#include "protocols/flytec/ctr_upload.h"
#include "protocols/flytec/field_text.h"
#include "tests/protocols/flytec/flytec_bench.h"
#include "tests/support/airspace_place.h"

namespace skyhaul::flytec {
namespace {

// One point, one circle and one arc: 7 sentences.
CtrRecord Mixed(const std::string& name) {
  return {.name = name,
          .remark = "Remark\tKreisbogen is longer",
          .number = 3440,
          .segments = {{.type = SegmentType::kPoint, .point = At(47.5, 11.25)},
                       {.type = SegmentType::kCircle, .point = At(-47.5, 11), .radius_m = 1234.6},
                       {.type = SegmentType::kArcByPoints,
                        .point = At(47, -11),
                        .start = At(47.1, -11),
                        .end = At(47, -11.1),
                        .direction = kCounterClockwise}}};
}

const Texts kMixedBodies = {
    "PBRCTRW,007,000,A                ,3440",    "PBRCTRW,007,001,Remark Kreisbogen",
    "PBRCTRW,007,002,P,4730.000,N,01115.000,E",  "PBRCTRW,007,003,C,4730.000,S,01100.000,E,01235",
    "PBRCTRW,007,004,X,4700.000,N,01100.000,W",  "PBRCTRW,007,005,T,4706.000,N,01100.000,W,-",
    "PBRCTRW,007,006,Z,4700.000,N,01106.000,W,-"};

constexpr const char* kRadius = "has a radius that is not from 1 to 99999 m";

TEST(CtrLines, AreNumberedPacedAndKnowWhereASegmentEnds) {
  const std::vector<CtrLine> lines = CtrLines(Mixed("A"), FieldText("A"));
  const std::pair<uint32_t, bool> expected[] = {{100, false}, {100, false}, {100, true},
                                                {100, true},  {200, false}, {200, false},
                                                {200, true}};
  ASSERT_EQ(lines.size(), 7U);
  for (size_t i = 0; i < lines.size(); ++i) {
    EXPECT_EQ(lines[i].sentence, Sentence(kMixedBodies[i]));
    EXPECT_EQ(std::pair(lines[i].pause_ms, lines[i].ends_segment), expected[i]) << i;
  }
}

TEST(CtrLines, AnArcByBearingsGetsItsEndsOnTheGround) {
  const AirspaceSegment arc = {.type = SegmentType::kArcByBearings,
                               .point = At(60, 10),
                               .radius_m = 50'000,
                               .start_bearing_deg = 0,
                               .end_bearing_deg = 270};
  const std::vector<CtrLine> lines = CtrLines({.name = "A", .segments = {arc}}, FieldText("A"));
  ASSERT_EQ(lines.size(), 5U);
  EXPECT_EQ(lines[2].sentence, Sentence("PBRCTRW,005,002,X,6000.000,N,01000.000,E"));
  // GeographicLib's geodesics end at 60 26.9261 N 10 E and at 59 59.8177 N 9 6.2398 E.
  EXPECT_EQ(lines[3].sentence, Sentence("PBRCTRW,005,003,T,6026.926,N,01000.000,E,+"));
  EXPECT_EQ(lines[4].sentence, Sentence("PBRCTRW,005,004,Z,5959.818,N,00906.240,E,+"));
}

TEST(CtrLines, WhatCannotBeSentIsNamedBeforehand) {
  using Change = void (*)(CtrRecord&);
  const std::pair<Change, const char*> cases[] = {
      {[](CtrRecord&) {}, ""},
      {[](CtrRecord& r) { r.segments.clear(); }, "has no outline"},
      {[](CtrRecord& r) { r.segments.assign(997, {}); }, ""},
      {[](CtrRecord& r) { r.segments.assign(998, {}); },
       "has more points than the instrument can be told"},
      {[](CtrRecord& r) { r.segments[1].radius_m = 99999; }, ""},
      {[](CtrRecord& r) { r.segments[1].radius_m = 99999.1; }, kRadius},
      {[](CtrRecord& r) { r.segments[1].radius_m = 0.5; }, ""},  // sent as 1 m
      {[](CtrRecord& r) { r.segments[1].radius_m = 0.49; }, kRadius},
      {[](CtrRecord& r) { r.segments[1].radius_m = NAN; }, kRadius},
      {[](CtrRecord& r) { r.segments[2].end_bearing_deg = INFINITY; },
       "has an arc without bearings"},
      {[](CtrRecord& r) { r.number = 9999; }, ""},
      {[](CtrRecord& r) { r.number = 10000; }, "has a number of more than four digits"},
  };
  for (const auto& [change, obstacle] : cases) {
    CtrRecord record = Mixed("A");
    change(record);
    EXPECT_EQ(CtrObstacle(record), *obstacle == 0 ? "" : std::string("CTR A ") + obstacle);
  }
  FlytecBench b;
  b.job.data.airspaces = {{.name = "A"}, {.name = "B"}};
  EXPECT_LT(WriteCtrJob(b.job), 0);
  EXPECT_EQ(b.recorder.messages,
            (Texts{"CTR upload: CTR A has no outline", "CTR upload: CTR B has no outline"}));
  EXPECT_EQ(b.bench.written, "") << "nothing is left to send";
}

TEST(ReadCtrs, ASilentInstrumentIsWaitedForUntilTheAbort) {
  FlytecBench b;
  b.bench.fault = Abort(20'000);
  EXPECT_LT(ReadCtrJob(b.job), 0);
  EXPECT_EQ(b.recorder.statuses.back(), "Transfer aborted");
  EXPECT_GE(Elapsed_ms(b.bench, 0), 900'000U);
}

struct Upload : FlytecBench {
  explicit Upload(const Texts& answers = {kListEnd}) {
    script.answers["$" + kMixedBodies.back()] = answers;
    job.data.airspaces = {Mixed("A"), Mixed("Not this one"), Mixed("B")};
    job.data.airspaces[1].selected = false;
  }
};

TEST(WriteCtrs, SendsTheSelectedOnesEachAcknowledged) {
  Upload b;
  ASSERT_EQ(WriteCtrJob(b.job), 2);
  ASSERT_EQ(b.script.requests.size(), 15U);
  EXPECT_EQ(b.recorder.statuses,
            (Texts{"Product data read", "1 CTR segments sent", "2 CTR segments sent",
                   "3 CTR segments sent", "Waiting for CTR transfer ack.", "CTR transfer ok",
                   "4 CTR segments sent", "5 CTR segments sent", "6 CTR segments sent",
                   "Waiting for CTR transfer ack.", "CTR transfer ok"}));
  EXPECT_EQ(b.recorder.progress.back(), "CTR 2/2 taken: B");
  EXPECT_EQ(b.recorder.percents.back(), 100);
  EXPECT_TRUE(b.recorder.messages.empty());
  // 1200 until identified; per airspace 1000 between sentences and 300 at its end.
  EXPECT_NEAR(b.Waited_ms(), 3800, 100);
}

TEST(WriteCtrs, EachAnswerButOneEndsTheUpload) {
  const std::pair<std::string, const char*> cases[] = {
      {Sentence("PBRANS,2 because"), "Plausibility error"},
      {Sentence("PBRANS,3"), "No further memory"},
      {Sentence("PBRANS,4"), "No more writing allowed"},
      {Sentence("PBRANS,5"), "NMEA syntax error"},
      {Sentence("PBRANS,6"), "Unknown ack. status"},
      {Sentence("PBRSNP,1"), "E600 Format error 1"},
      {"$PBRANS,1*02\r\n", "E600 Format error 5"},
      {"$PBRANS,1*01\r", "Missing CTR upload ack."},
      {"unplugged", "E601 COM port read error"},
  };
  for (const auto& [answer, message] : cases) {
    Upload b({kListEnd, answer});
    if (answer == "unplugged") b.bench.fault = Unplug(60);
    EXPECT_LT(WriteCtrJob(b.job), 0) << message;
    EXPECT_EQ(b.recorder.messages,
              Texts{std::string("CTR upload acknowledge status: ") + message + "\nB"});
    // 1200 until identified, 2300 for both uploads, and the silence.
    EXPECT_NEAR(b.Waited_ms(), answer.ends_with('\r') ? 23'500 : 3500, 100);
    EXPECT_EQ(b.job.data.sent, 1U);
    EXPECT_EQ(b.recorder.statuses.back(), "6 CTR segments sent");
    EXPECT_EQ(b.recorder.progress.back(), "Sending CTR 2/2: B");
  }
}

TEST(WriteCtrs, AFailedWriteTellsHowFarItCame) {
  const char* statuses[] = {"CTR name sent",       "CTR remark sent",     "0 CTR segments sent",
                            "1 CTR segments sent", "2 CTR segments sent", "2 CTR segments sent",
                            "2 CTR segments sent"};
  for (size_t line = 0; line < std::size(statuses); ++line) {
    Upload b;
    b.bench.fault = FailWrite(1 + line);
    EXPECT_LT(WriteCtrJob(b.job), 0);
    EXPECT_EQ(b.recorder.statuses.back(), statuses[line]);
    EXPECT_EQ(b.recorder.messages, Texts{"CTR upload: COM port write error"});
  }
}

}  // namespace
}  // namespace skyhaul::flytec
