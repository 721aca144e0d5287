#include "protocols/flytec/ctr_sentence.h"

#include <gtest/gtest.h>

#include "tests/support/airspace_place.h"

namespace skyhaul::flytec {
namespace {

// What the last of some sentences gave; every earlier one must have asked for more.
int Take(CtrReceiver& receiver, const std::vector<std::string>& sentences) {
  int result = 1;
  for (const std::string& sentence : sentences) {
    EXPECT_EQ(result, 1) << sentence;
    result = TakeCtrSentence(receiver, sentence);
  }
  return result;
}

void ExpectNear(AirspacePosition position, AirspacePosition expected) {
  EXPECT_NEAR(position.lat, expected.lat, 1);
  EXPECT_NEAR(position.lon, expected.lon, 1);
}

TEST(CtrSentence, BuildsTheRecord) {
  CtrReceiver receiver;
  ASSERT_EQ(
      Take(receiver, {"$PBRCTR,007,000,Kreisbogen       ,3440", "$PBRCTR,007,001,Remark Kreisbogen",
                      "$PBRCTR,007,002,P,4710.002,N,01104.700,E",
                      "$PBRCTR,007,003,C,4730.000,S,17959.999,W,99999",
                      "$PBRCTR,007,004,X,8959.999,N,18000.000,E",
                      "$PBRCTR,007,005,T,4703.000,N,01110.200,E,-",
                      "$PBRCTR,007,006,Z,4706.000,N,01110.400,E,-", "$PBRCTR,3,0,Second,9999",
                      "$PBRCTR,3,1,", "$PBRCTR,3,2,P,0000.0,N,00000.0,W", "$PBRANS,1"}),
      0);
  ASSERT_EQ(receiver.airspaces.size(), 2U);
  const CtrRecord& first = receiver.airspaces[0];
  EXPECT_EQ(first.name, "Kreisbogen");
  EXPECT_EQ(first.remark, "Remark Kreisbogen");
  EXPECT_EQ(first.number, 3440U);
  ASSERT_EQ(first.segments.size(), 3U);
  EXPECT_EQ(first.segments[0].type, SegmentType::kPoint);
  ExpectNear(first.segments[0].point, At(47 + 10.002 / 60, 11 + 4.7 / 60));
  EXPECT_EQ(first.segments[1].type, SegmentType::kCircle);
  ExpectNear(first.segments[1].point, At(-47.5, -179 - 59.999 / 60));
  EXPECT_EQ(first.segments[1].radius_m, 99999);
  const AirspaceSegment& arc = first.segments[2];
  EXPECT_EQ(arc.type, SegmentType::kArcByPoints);
  EXPECT_EQ(arc.direction, kCounterClockwise);
  ExpectNear(arc.point, At(89 + 59.999 / 60, 180));
  ExpectNear(arc.start, At(47.05, 11.17));
  ExpectNear(arc.end, At(47.1, 11 + 10.4 / 60));
  EXPECT_EQ(receiver.airspaces[1].name, "Second");
  EXPECT_EQ(receiver.airspaces[1].remark, "");
  EXPECT_EQ(receiver.airspaces[1].number, 9999U);
}

TEST(CtrSentence, LongTextsAreCut) {
  CtrReceiver receiver;
  ASSERT_EQ(Take(receiver, {"$PBRCTR,3,0," + std::string(60, 'n') + ",1",
                            "$PBRCTR,3,1," + std::string(60, 'r')}),
            1);
  EXPECT_EQ(receiver.airspaces[0].name.size(), 50U);
  EXPECT_EQ(receiver.airspaces[0].remark.size(), 50U);
}

using Faults = std::vector<std::pair<int, std::vector<std::string>>>;

TEST(CtrSentence, EachFaultBetweenAirspacesHasItsNumber) {
  const Faults cases = {
      {0, {"$PBRANS,1"}},  // an empty list
      {kCtrNoField, {"", "$PBRANS"}},
      {kCtrBadEnd, {"$PBRANS,2", "$PBRANS,"}},
      {kCtrUnknownSentence, {"$PBRCTRW,3,0,A,1"}},
      {kCtrTotalMissing, {"$PBRCTR,3"}},
      {kCtrBadTotal, {"$PBRCTR,x,0,A,1"}},
      {kCtrIndexMissing, {"$PBRCTR,3,0"}},
      {kCtrBadIndex, {"$PBRCTR,3,-,A,1"}},
      {kCtrTotalTooSmall, {"$PBRCTR,2,0,A,1"}},
      {kCtrNotAtStart, {"$PBRCTR,3,1,A,1"}},
      {kCtrNumberMissing, {"$PBRCTR,3,0,A"}},
      {kCtrBadNumber, {"$PBRCTR,3,0,A,1x", "$PBRCTR,3,0,A,10000"}},
  };
  for (const auto& [error, sentences] : cases) {
    for (const std::string& sentence : sentences) {
      CtrReceiver receiver;
      EXPECT_EQ(TakeCtrSentence(receiver, sentence), -error) << sentence;
    }
  }
}

TEST(CtrSentence, EachFaultOfAnElementHasItsNumber) {
  const std::string place = ",4710.0,N,01104.7,E";
  const Faults cases = {
      {kCtrTypeMissing, {"P"}},
      {kCtrBadType, {"Q" + place, "PP" + place, place}},
      {kCtrLatitudeMissing, {"P,4710.0"}},
      {kCtrLatitudeTooLarge, {"P,9000.0,N,01104.7,E", "P,99999999999999999999.0,N,01104.7,E"}},
      {kCtrLatitudeNoPoint, {"P,4710,N,01104.7,E", "P,,N,01104.7,E"}},
      {kCtrBadLatitudeFraction, {"P,4710.0x,N,01104.7,E"}},
      {kCtrLatitudeHemisphereMissing, {"P,4710.0,N"}},
      {kCtrBadLatitudeHemisphere, {"P,4710.0,E,01104.7,E", "P,4710.0,,01104.7,E"}},
      {kCtrLongitudeMissing, {"P,4710.0,N,01104.7"}},
      {kCtrLongitudeTooLarge, {"P,4710.0,N,18001.0,E"}},
      {kCtrLongitudeNoPoint, {"P,4710.0,N,01104,E"}},
      {kCtrBadLongitudeFraction, {"P,4710.0,N,01104.-,E"}},
      {kCtrLongitudeHemisphereMissing, {"C" + place}},
      {kCtrBadLongitudeHemisphere, {"P,4710.0,N,01104.7,N", "P" + place + ",+"}},
      {kCtrOffTheEarth, {"P,8961.0,N,01104.7,E", "P,4710.0,N,18000.1,E"}},
      {kCtrBadRadius, {"C" + place + ",", "C" + place + ",12a", "C" + place + ",100000"}},
      {kCtrArcOutOfOrder, {"T" + place + ",+", "Z" + place + ",+"}},
  };
  for (const auto& [error, texts] : cases) {
    for (const std::string& fields : texts) {
      CtrReceiver receiver;
      ASSERT_EQ(Take(receiver, {"$PBRCTR,9,0,A,1", "$PBRCTR,9,1,R"}), 1);
      EXPECT_EQ(TakeCtrSentence(receiver, "$PBRCTR,9,2," + fields), -error) << fields;
    }
  }
}

TEST(CtrSentence, EachFaultOfTheOrderHasItsNumber) {
  const std::string open = "$PBRCTR,5,0,A,1";
  const std::string remark = "$PBRCTR,5,1,R";
  const std::string centre = "$PBRCTR,5,2,X,4710.0,N,01104.7,E";
  const std::string start = "$PBRCTR,5,3,T,4710.0,N,01104.7,E,+";
  const std::pair<std::vector<std::string>, int> cases[] = {
      {{open, open}, kCtrNoRemark},
      {{open, "$PBRCTR,5,2,R"}, kCtrNoRemark},
      {{open, "$PBRANS,1"}, kCtrUnknownSentence},
      {{open, remark, "$PBRCTR,5,3,P,4710.0,N,01104.7,E"}, kCtrOutOfSequence},
      {{open, remark, remark}, kCtrOutOfSequence},
      {{open, "$PBRCTR,6,1,R"}, kCtrTotalChanged},
      {{open, remark, centre, "$PBRCTR,5,3,P,4710.0,N,01104.7,E"}, kCtrArcOutOfOrder},
      {{open, remark, centre, "$PBRCTR,5,3,Z,4710.0,N,01104.7,E,+"}, kCtrArcOutOfOrder},
      {{open, remark, centre, "$PBRCTR,5,3,T,4710.0,N,01104.7,E,x"}, kCtrBadDirection},
      {{open, remark, centre, start, "$PBRCTR,5,4,Z,4710.0,N,01104.7,E,"}, kCtrBadDirection},
      {{open, remark, centre, start, "$PBRCTR,5,4,T,4710.0,N,01104.7,E,+"}, kCtrArcOutOfOrder},
      {{"$PBRCTR,3,0,A,1", "$PBRCTR,3,1,R", "$PBRCTR,3,2,X,4710.0,N,01104.7,E"}, kCtrArcOutOfOrder},
  };
  for (const auto& [sentences, error] : cases) {
    CtrReceiver receiver;
    EXPECT_EQ(Take(receiver, sentences), -error) << sentences.back();
  }
}

TEST(CtrSentence, AnEndlessListRunsOutOfRoom) {
  CtrReceiver receiver;
  receiver.airspaces.resize(10'000);
  EXPECT_EQ(TakeCtrSentence(receiver, "$PBRCTR,3,0,A,1"), -kCtrMemory);
}

}  // namespace
}  // namespace skyhaul::flytec
