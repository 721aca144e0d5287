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

TEST(CtrLines, AreNumberedPacedAndKnowWhereASegmentEnds) {
  const std::vector<CtrLine> lines = CtrLines(Mixed("A"), FieldText("A"));
  constexpr uint32_t kPauses_ms[] = {100, 100, 100, 100, 200, 200, 200};
  constexpr bool kEnds[] = {false, false, true, true, false, false, true};
  ASSERT_EQ(lines.size(), 7U);
  for (size_t i = 0; i < lines.size(); ++i) {
    EXPECT_EQ(lines[i].sentence, Sentence(kMixedBodies[i]));
    EXPECT_EQ(lines[i].pause_ms, kPauses_ms[i]) << i;
    EXPECT_EQ(lines[i].ends_segment, kEnds[i]) << i;
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

TEST(CtrLines, WhatCannotBeToldIsSaidBeforehand) {
  CtrRecord no_outline = Mixed("A");
  no_outline.segments.clear();
  CtrRecord long_outline = Mixed("A");
  long_outline.segments.assign(998, {.point = At(1, 1)});
  CtrRecord longest_outline = no_outline;
  longest_outline.segments.assign(997, {.point = At(1, 1)});
  const auto with_radius = [](double radius_m) {
    CtrRecord record = Mixed("A");
    record.segments[1].radius_m = radius_m;
    return record;
  };
  const CtrRecord wide = with_radius(99999.1);
  CtrRecord no_bearing = Mixed("A");
  no_bearing.segments[2].type = SegmentType::kArcByBearings;
  no_bearing.segments[2].end_bearing_deg = INFINITY;
  CtrRecord last_number = Mixed("A");
  last_number.number = 9999;
  CtrRecord numbered = Mixed("A");
  numbered.number = 10000;
  const std::pair<CtrRecord, const char*> cases[] = {
      {Mixed("A"), ""},
      {no_outline, "CTR A has no outline"},
      {long_outline, "CTR A has more points than the instrument can be told"},
      {wide, "CTR A has a radius that is not from 1 to 99999 m"},
      {with_radius(0.49), "CTR A has a radius that is not from 1 to 99999 m"},
      {with_radius(NAN), "CTR A has a radius that is not from 1 to 99999 m"},
      {with_radius(0.5), ""},  // sent as 1 m
      {with_radius(99999), ""},
      {longest_outline, ""},
      {last_number, ""},
      {no_bearing, "CTR A has an arc without bearings"},
      {numbered, "CTR A has a number of more than four digits"},
  };
  for (const auto& [record, obstacle] : cases) EXPECT_EQ(CtrObstacle(record), obstacle);
  FlytecBench b;
  b.job.data.airspaces = {wide, no_outline};
  EXPECT_LT(WriteCtrJob(b.job), 0);
  EXPECT_EQ(b.recorder.messages.size(), 2U);
  EXPECT_EQ(b.bench.written, "") << "nothing is left to send";
}

// --- Reading -------------------------------------------------------------------------------------

const std::string kListEnd = Sentence("PBRANS,1");
const std::string kOneCtr = Sentence("PBRCTR,003,000,abcdefghijklmnopq,0001") +
                            Sentence("PBRCTR,003,001,Remark           ") +
                            Sentence("PBRCTR,003,002,C,4710.001,N,01104.700,E,12345");

TEST(ReadCtrs, ReceivesUntilTheClosingSentence) {
  FlytecBench b;
  b.script.answers["$PBRCTR,"] = {"\x13" + kOneCtr + kOneCtr + kListEnd + "\x11"};
  ASSERT_EQ(ReadCtrJob(b.job), 2);
  ASSERT_EQ(b.job.data.airspaces.size(), 2U);
  EXPECT_EQ(b.job.data.airspaces[1].segments[0].radius_m, 12345);
  EXPECT_EQ(b.bench.written, "\x11$PBRSNP,*21\r\n\x11$PBRCTR,*29\r\n");
  EXPECT_EQ(b.recorder.statuses, (Texts{"Product data read", "Receiving CTR list",
                                        "Receiving CTR list", "2 CTR(s) received"}));
}

TEST(ReadCtrs, EachFailureHasItsMessageAndDeliversNothing) {
  const Failure cases[] = {
      {kListEnd, FailWrite(1), "E700 COM port write error"},
      {kListEnd, Unplug(50), "E701 COM port read error"},
      {kOneCtr + "$" + std::string(82, 'x'), {}, "E703 Format error 1"},
      {kOneCtr + "$PBRANS,1*01\r\r", {}, "E703 Format error 6"},
      {kOneCtr + Sentence("PBRANS,2"), {}, "E702 Format error 2"},
      {Sentence("PBRCTR,2,0,A,1"), {}, "E702 Format error 8"},
      {kOneCtr + kOneCtr.substr(0, kOneCtr.find('\n') + 1) + kListEnd, {}, "E702 Format error 3"},
  };
  for (Failure failure : cases) {
    FlytecBench b;
    failure.message.insert(0, "Read CTR list: ");
    ExpectFailure(b, ReadCtrJob, "$PBRCTR,", failure);
  }
}

TEST(ReadCtrs, ASilentInstrumentIsWaitedForUntilTheAbort) {
  FlytecBench b;
  b.bench.fault = Abort(20'000);
  EXPECT_LT(ReadCtrJob(b.job), 0);
  EXPECT_EQ(b.recorder.statuses.back(), "Transfer aborted");
  EXPECT_GE(Elapsed_ms(b.bench, 0), 900'000U);
}

// --- Writing -------------------------------------------------------------------------------------

struct Upload : FlytecBench {
  explicit Upload(const Texts& answers = {kListEnd}) {
    script.answers["$" + kMixedBodies.back()] = answers;
    job.data.airspaces = {Mixed("A"), Mixed("Not this one"), Mixed("B")};
    job.data.airspaces[1].selected = false;
  }
};

TEST(WriteCtrs, SendsTheSelectedOnesEachAcknowledged) {
  Upload b;
  const uint64_t start_ns = b.bench.now_ns;
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
  EXPECT_NEAR(static_cast<double>(Elapsed_ms(b.bench, start_ns)), 3810, 100);
}

TEST(WriteCtrs, EachAnswerButOneEndsTheUpload) {
  const std::pair<std::string, const char*> cases[] = {
      {Sentence("PBRANS,2"), "Plausibility error"},
      {Sentence("PBRANS,3"), "No further memory"},
      {Sentence("PBRANS,4"), "No more writing allowed"},
      {Sentence("PBRANS,5"), "NMEA syntax error"},
      {Sentence("PBRANS,6"), "Unknown ack. status"},
      {Sentence("PBRSNP,1"), "E600 Format error 1"},
      {"$PBRANS,1*01\r\r", "E600 Format error 6"},
      {"", "Missing CTR upload ack."},
      {"$PBRANS,1*01\r", "Missing CTR upload ack."},
      {"unplugged", "E601 COM port read error"},
  };
  for (const auto& [answer, message] : cases) {
    Upload b({kListEnd, answer});
    if (answer == "unplugged") b.bench.fault = Unplug(60);
    EXPECT_LT(WriteCtrJob(b.job), 0) << message;
    EXPECT_EQ(b.recorder.messages,
              Texts{std::string("CTR upload acknowledge status: ") + message + "\nB"});
    EXPECT_EQ(b.job.data.sent, 1U);
    EXPECT_EQ(b.recorder.statuses.back(), "6 CTR segments sent");
    EXPECT_EQ(b.recorder.progress.back(), "Sending CTR 2/2: B");
  }
}

TEST(WriteCtrs, SilenceIsMeasuredFromTheLastByte) {
  const uint64_t start_ns = Bench().now_ns;
  Upload silent({""});
  EXPECT_LT(WriteCtrJob(silent.job), 0);
  // 1200 until identified and 1000 between sentences before the waiting begins.
  EXPECT_NEAR(static_cast<double>(Elapsed_ms(silent.bench, start_ns)), 22'220, 100);
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
