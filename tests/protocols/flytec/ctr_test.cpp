#include <cmath>

#include "protocols/flytec/ctr_lines.h"
#include "protocols/flytec/ctr_list.h"
#include "protocols/flytec/ctr_sentence.h"
#include "protocols/flytec/ctr_upload.h"
#include "protocols/flytec/field_text.h"
#include "tests/protocols/flytec/flytec_bench.h"
#include "tests/support/airspace_place.h"

namespace skyhaul::flytec {
namespace {

// --- Reading -------------------------------------------------------------------------------------

// What the last of some sentences gave; every earlier one must have asked for more.
int Take(CtrReceiver& receiver, const Texts& sentences) {
  int result = 1;
  for (const std::string& sentence : sentences) {
    EXPECT_EQ(result, 1) << sentence;
    result = TakeCtrSentence(receiver, sentence);
  }
  return result;
}

// A point, a circle and an arc: 7 sentences.
const Texts kMixed = {
    "$PBRCTR,007,000,A                ,3440",    "$PBRCTR,007,001,Remark Kreisbogen",
    "$PBRCTR,007,002,P,4710.002,N,01104.700,E",  "$PBRCTR,007,003,C,4730.000,S,17959.999,W,99999",
    "$PBRCTR,007,004,X,8959.999,N,18000.000,E",  "$PBRCTR,007,005,T,4703.000,N,01110.200,E,-",
    "$PBRCTR,007,006,Z,4706.000,N,01110.400,E,-"};

CtrRecord Mixed(const std::string& name) {
  CtrReceiver receiver;
  EXPECT_EQ(Take(receiver, kMixed), 1);
  receiver.airspaces[0].name = name;
  return receiver.airspaces[0];
}

// Written again, the sentences are the same but for the W of the upload and the checksum.
std::string Upload(const std::string& sentence) {
  return Sentence("PBRCTRW" + sentence.substr(7));
}

TEST(CtrSentence, BuildsTheRecordFromWhichItCanBeWrittenAgain) {
  const CtrRecord record = Mixed("A");
  const std::vector<CtrLine> lines = CtrLines(record, FieldText("A"));
  const std::pair<uint32_t, bool> expected[] = {{100, false}, {100, false}, {100, true},
                                                {100, true},  {200, false}, {200, false},
                                                {200, true}};
  ASSERT_EQ(lines.size(), 7U);
  for (size_t i = 0; i < lines.size(); ++i) {
    EXPECT_EQ(lines[i].sentence, Upload(kMixed[i]));
    EXPECT_EQ(std::pair(lines[i].pause_ms, lines[i].ends_segment), expected[i]) << i;
  }
  const AirspaceSegment& arc = record.segments[2];
  EXPECT_EQ(arc.direction, kCounterClockwise);
}

TEST(CtrSentence, LongTextsAreCutAndShortOnesTaken) {
  CtrReceiver receiver;
  const std::string text(60, 'x');
  const Texts sentences = {"$PBRCTR,3,0," + text + ",9999", "$PBRCTR,3,1," + text,
                           "$PBRCTR,3,2,P,0000.0,N,00000.0,W", "$PBRCTR,3,0,,", "$PBRCTR,3,1,"};
  ASSERT_EQ(Take(receiver, sentences), 1);
  EXPECT_EQ(receiver.airspaces[0].name, text.substr(0, 50));
  EXPECT_EQ(receiver.airspaces[0].remark, text.substr(0, 50));
  EXPECT_EQ(receiver.airspaces[1].name + receiver.airspaces[1].remark, "");
}

TEST(CtrSentence, EachFaultHasItsNumber) {
  const std::string open = "$PBRCTR,5,0,A,1";
  const std::string remark = "$PBRCTR,5,1,R";
  const std::string centre = "$PBRCTR,5,2,X,4710.0,N,01104.7,E";
  const std::string start = "$PBRCTR,5,3,T,4710.0,N,01104.7,E,+";
  const std::string place = "4710.0,N,01104.7,E";
  const std::string at = "$PBRCTR,5,2,";
  const std::string circle = at + "C," + place + ",";
  const Texts named = {open, remark};
  // What is sound before it, the wrong sentences one by one, and their number.
  const std::tuple<Texts, Texts, int> cases[] = {
      {{}, {"$PBRANS,1"}, 0},  // an empty list
      {{}, {"", "$PBRANS"}, kCtrNoField},
      {{}, {"$PBRANS,2", "$PBRANS,"}, kCtrBadEnd},
      {{}, {"$PBRCTRW,3,0,A,1"}, kCtrUnknownSentence},
      {{}, {"$PBRCTR,3"}, kCtrTotalMissing},
      {{}, {"$PBRCTR,x,0,A,1"}, kCtrBadTotal},
      {{}, {"$PBRCTR,3,0"}, kCtrIndexMissing},
      {{}, {"$PBRCTR,3,-,A,1"}, kCtrBadIndex},
      {{}, {"$PBRCTR,2,0,A,1"}, kCtrTotalTooSmall},
      {{}, {"$PBRCTR,3,1,A,1"}, kCtrNotAtStart},
      {{}, {"$PBRCTR,3,0,A"}, kCtrWarningMissing},
      {{}, {"$PBRCTR,3,0,A,1x", "$PBRCTR,3,0,A,10000"}, kCtrBadWarning},
      {{open}, {open, at + "R"}, kCtrNoRemark},
      {{open}, {"$PBRANS,1"}, kCtrUnknownSentence},
      {{open}, {"$PBRCTR,6,1,R"}, kCtrTotalChanged},
      {named, {remark, "$PBRCTR,5,3,P," + place}, kCtrOutOfSequence},
      {named, {at + "P"}, kCtrTypeMissing},
      {named, {at + "Q," + place, at + "PP," + place, at + "," + place}, kCtrBadType},
      {named, {at + "P,4710.0"}, kCtrLatitudeMissing},
      {named, {at + "P,9000.0,N,0", at + "P,99999999999999999999.0,N,0"}, kCtrLatitudeTooLarge},
      {named, {at + "P,4710,N,0,E", at + "P,,N,0,E"}, kCtrLatitudeNoPoint},
      {named, {at + "P,4710.0x,N,01104.7,E"}, kCtrBadLatitudeFraction},
      {named, {at + "P,4710.0,N"}, kCtrLatitudeHemisphereMissing},
      {named, {at + "P,4710.0,E,0", at + "P,4710.0,,0"}, kCtrBadLatitudeHemisphere},
      {named, {at + "P,4710.0,N,01104.7"}, kCtrLongitudeMissing},
      {named, {at + "P,4710.0,N,18001.0,E"}, kCtrLongitudeTooLarge},
      {named, {at + "C," + place}, kCtrLongitudeHemisphereMissing},
      {named, {at + "P," + place + ",+"}, kCtrBadLongitudeHemisphere},
      {named, {at + "P,8961.0,N,01104.7,E", at + "P,4710.0,N,18000.1,E"}, kCtrOffTheEarth},
      {named, {circle, circle + "12a", circle + "100000"}, kCtrBadRadius},
      {named, {at + "T," + place + ",+", at + "Z," + place + ",+"}, kCtrArcOutOfOrder},
      {{open, remark, centre}, {"$PBRCTR,5,3,P," + place}, kCtrArcOutOfOrder},
      {{open, remark, centre}, {"$PBRCTR,5,3,Z," + place + ",+"}, kCtrArcOutOfOrder},
      {{open, remark, centre}, {"$PBRCTR,5,3,T," + place + ",x"}, kCtrBadDirection},
      {{open, remark, centre, start}, {"$PBRCTR,5,4,Z," + place + ","}, kCtrBadDirection},
      {{open, remark, centre, start}, {"$PBRCTR,5,4,T," + place + ",+"}, kCtrArcOutOfOrder},
      {{"$PBRCTR,3,0,A,1", "$PBRCTR,3,1,R"}, {"$PBRCTR,3,2,X," + place}, kCtrArcOutOfOrder},
  };
  for (const auto& [sound, wrong, error] : cases) {
    for (const std::string& sentence : wrong) {
      CtrReceiver receiver;
      EXPECT_EQ(Take(receiver, sound), 1);
      EXPECT_EQ(TakeCtrSentence(receiver, sentence), -error) << sentence;
    }
  }
}

TEST(CtrSentence, AnEndlessListRunsOutOfRoom) {
  CtrReceiver receiver;
  receiver.airspaces.resize(10'000);
  EXPECT_EQ(TakeCtrSentence(receiver, "$PBRCTR,3,0,A,1"), -kCtrMemory);
}

// --- Writing -------------------------------------------------------------------------------------

constexpr const char* kRadius = "has a radius that is not from 1 to 99999 m";

TEST(CtrLines, AnArcByBearingsGetsItsEndsOnTheGroundAndARadiusIsRounded) {
  const CtrRecord record = {
      .name = "A",
      .remark = "Remark\tKreisbogen is longer",
      .segments = {{.type = SegmentType::kArcByBearings,
                    .point = At(60, 10),
                    .radius_m = 50'000,
                    .end_bearing_deg = 270},
                   {.type = SegmentType::kCircle, .point = At(47.5, 11), .radius_m = 1234.6}}};
  const std::vector<CtrLine> lines = CtrLines(record, FieldText("A"));
  ASSERT_EQ(lines.size(), 6U);
  EXPECT_EQ(lines[0].sentence, Sentence("PBRCTRW,006,000,A                ,2000"));
  EXPECT_EQ(lines[1].sentence, Sentence("PBRCTRW,006,001,Remark Kreisbogen"));
  // GeographicLib's geodesics end at 60 26.9261 N 10 E and at 59 59.8177 N 9 6.2398 E.
  EXPECT_EQ(lines[3].sentence, Sentence("PBRCTRW,006,003,T,6026.926,N,01000.000,E,+"));
  EXPECT_EQ(lines[4].sentence, Sentence("PBRCTRW,006,004,Z,5959.818,N,00906.240,E,+"));
  EXPECT_EQ(lines[5].sentence, Sentence("PBRCTRW,006,005,C,4730.000,N,01100.000,E,01235"));
}

TEST(CtrLines, WhatCannotBeSentIsNamedBeforehand) {
  using Change = void (*)(CtrRecord&);
  const std::pair<Change, const char*> cases[] = {
      {[](CtrRecord& r) { r.segments.assign(100, {}); }, ""},
      {[](CtrRecord& r) { r.segments.assign(34, {.type = SegmentType::kArcByPoints}); },
       "has 102 points, but the instrument takes 100"},
      {[](CtrRecord& r) { r.segments[1].radius_m = 99999; }, ""},
      {[](CtrRecord& r) { r.segments[1].radius_m = 99999.1; }, kRadius},
      {[](CtrRecord& r) { r.segments[1].radius_m = 0.5; }, ""},  // sent as 1 m
      {[](CtrRecord& r) { r.segments[1].radius_m = 0.49; }, kRadius},
      {[](CtrRecord& r) { r.segments[1].radius_m = NAN; }, kRadius},
      {[](CtrRecord& r) {
         r.segments[2] = {.type = SegmentType::kArcByBearings, .end_bearing_deg = INFINITY};
       },
       "has an arc without bearings"},
      {[](CtrRecord& r) { r.warning_m = 9999; }, ""},
      {[](CtrRecord& r) { r.warning_m = 10000; },
       "has a warning distance of more than four digits"},
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
  b.job.data.airspaces.assign(501, Mixed("A"));
  EXPECT_LT(WriteCtrJob(b.job), 0);
  EXPECT_EQ(b.recorder.messages.back(),
            "CTR upload: 501 airspaces, but the instrument holds 500: nothing was sent");
  EXPECT_EQ(b.bench.written, "");
}

TEST(ReadCtrs, ASilentInstrumentIsWaitedForUntilTheAbort) {
  FlytecBench b;
  b.bench.fault = Abort(20'000);
  EXPECT_LT(ReadCtrJob(b.job), 0);
  EXPECT_EQ(b.recorder.statuses.back(), "Transfer aborted");
  EXPECT_GE(Elapsed_ms(b.bench, 0), 900'000U);
}

// The instrument's list, sentences with their checksums.
std::string List(const CtrRecord& record) {
  std::string text;
  for (const CtrLine& line : CtrLines(record, FieldText(record.name))) {
    const std::string body = line.sentence.substr(8, line.sentence.find('*') - 8);
    text += Sentence("PBRCTR" + body);
  }
  return text + kListEnd;
}

TEST(WriteCtrs, WhatTheListShowsOtherwiseIsSentOnceMoreAndThenNamed) {
  using Change = void (*)(CtrRecord&);
  const std::pair<Change, bool> cases[] = {
      {[](CtrRecord& r) { r.segments[0].point.lat += 199; }, true},  // a thousandth of a minute
      {[](CtrRecord& r) { r.segments[0].point.lon += 398; }, false},
      {[](CtrRecord& r) { r.segments[1].radius_m -= 1; }, true},
      {[](CtrRecord& r) { r.segments[1].radius_m -= 2; }, false},
      {[](CtrRecord& r) { r.segments[2].start.lat += 398; }, false},
      {[](CtrRecord& r) { r.segments[2].end.lon -= 398; }, false},
      {[](CtrRecord& r) { r.segments[2].direction = kClockwise; }, false},
      {[](CtrRecord& r) { std::swap(r.segments[0], r.segments[1]); }, false},
      {[](CtrRecord& r) { r.segments.pop_back(); }, false},
      {[](CtrRecord& r) { r.warning_m = 3441; }, false},
      {[](CtrRecord& r) { r.remark = "Remark"; }, false},
      {[](CtrRecord& r) { r.name = "B"; }, false},
  };
  for (const auto& [change, same] : cases) {
    const std::string last = Upload(kMixed.back());
    CtrRecord held = Mixed("A");
    change(held);
    FlytecBench b;
    b.job.data.airspaces = {Mixed("A")};
    b.script.answers[last.substr(0, last.find('*'))] = {kListEnd};
    b.script.answers["$PBRCTR,"] = {List(held)};
    SCOPED_TRACE(b.script.answers["$PBRCTR,"][0]);
    EXPECT_EQ(WriteCtrJob(b.job), same ? 1 : -1);
    // The identification, the sentences of the upload and the list, those twice where they differ.
    EXPECT_EQ(b.script.requests.size(), same ? 9U : 17U);
    const char* const text =
        "CTR upload: 1 of 1 airspaces are missing or different in the instrument: A";
    EXPECT_EQ(b.recorder.messages, same ? Texts{} : Texts{text});
    EXPECT_EQ(b.job.data.verified, same ? 1U : 0U);
    EXPECT_EQ(b.job.data.sent, 1U);
  }
}

struct TwoCtrs : FlytecBench {
  explicit TwoCtrs(const Texts& answers = {kListEnd}) {
    const std::string last = Upload(kMixed.back());
    script.answers[last.substr(0, last.find('*'))] = answers;
    job.data.airspaces = {Mixed("A"), Mixed("Not this one"), Mixed("B")};
    job.data.airspaces[1].selected = false;
    job.verify = false;
  }
};

TEST(WriteCtrs, SendsTheSelectedOnesEachAcknowledged) {
  TwoCtrs b;
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
      {Sentence("PBRANS,5"), "NMEA syntax error"},
      {Sentence("PBRANS,6"), "Unknown ack. status"},
      {Sentence("PBRSNP,1"), "E600 Format error 1"},
      {"$PBRANS,1*02\r\n", "E600 Format error 5"},
      {"$PBRANS,1*01\r", "Missing CTR upload ack."},
      {"unplugged", "E601 COM port read error"},
  };
  for (const auto& [answer, message] : cases) {
    TwoCtrs b({kListEnd, answer});
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
  const Texts statuses = {"CTR name sent", "CTR remark sent", "0 CTR segments sent",
                          "1 CTR segments sent", "2 CTR segments sent"};
  for (size_t line = 0; line < statuses.size(); ++line) {
    TwoCtrs b;
    b.bench.fault = FailWrite(1 + line);
    EXPECT_LT(WriteCtrJob(b.job), 0);
    EXPECT_EQ(b.recorder.statuses.back(), statuses[line]);
    EXPECT_EQ(b.recorder.messages, Texts{"CTR upload: COM port write error"});
  }
}

}  // namespace
}  // namespace skyhaul::flytec
