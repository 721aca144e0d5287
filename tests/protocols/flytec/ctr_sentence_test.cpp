#include "protocols/flytec/ctr_sentence.h"

#include <gtest/gtest.h>

#include "protocols/flytec/ctr_lines.h"
#include "protocols/flytec/field_text.h"
#include "tests/support/airspace_place.h"

namespace skyhaul::flytec {
namespace {

using Texts = std::vector<std::string>;

// What the last of some sentences gave; every earlier one must have asked for more.
int Take(CtrReceiver& receiver, const Texts& sentences) {
  int result = 1;
  for (const std::string& sentence : sentences) {
    EXPECT_EQ(result, 1) << sentence;
    result = TakeCtrSentence(receiver, sentence);
  }
  return result;
}

TEST(CtrSentence, BuildsTheRecord) {
  const Texts sentences = {"$PBRCTR,007,000,Kreisbogen       ,3440",
                           "$PBRCTR,007,001,Remark Kreisbogen",
                           "$PBRCTR,007,002,P,4710.002,N,01104.700,E",
                           "$PBRCTR,007,003,C,4730.000,S,17959.999,W,99999",
                           "$PBRCTR,007,004,X,8959.999,N,18000.000,E",
                           "$PBRCTR,007,005,T,4703.000,N,01110.200,E,-",
                           "$PBRCTR,007,006,Z,4706.000,N,01110.400,E,-",
                           "$PBRCTR,003,000,Second           ,9999",
                           "$PBRCTR,003,001,                 ",
                           "$PBRCTR,003,002,P,0000.000,N,00000.000,E"};
  CtrReceiver receiver;
  EXPECT_EQ(Take(receiver, sentences), 1);
  ASSERT_EQ(TakeCtrSentence(receiver, "$PBRANS,1"), 0);
  // Written again they are the same, but for the W of the upload and the checksum.
  Texts written;
  for (const CtrRecord& record : receiver.airspaces) {
    for (const CtrLine& line : CtrLines(record, FieldText(record.name))) {
      written.push_back("$PBRCTR" + line.sentence.substr(8, line.sentence.find('*') - 8));
    }
  }
  EXPECT_EQ(written, sentences);
  const AirspacePosition start = receiver.airspaces[0].segments[2].start;
  EXPECT_NEAR(start.lat, At(47.05, 11.17).lat, 1);
  EXPECT_NEAR(start.lon, At(47.05, 11.17).lon, 1);
}

TEST(CtrSentence, LongTextsAreCutAndShortOnesTaken) {
  CtrReceiver receiver;
  ASSERT_EQ(Take(receiver, {"$PBRCTR,3,0," + std::string(60, 'n') + ",1",
                            "$PBRCTR,3,1," + std::string(60, 'r'),
                            "$PBRCTR,3,2,P,0000.0,N,00000.0,W", "$PBRCTR,3,0,,", "$PBRCTR,3,1,"}),
            1);
  EXPECT_EQ(receiver.airspaces[0].name, std::string(50, 'n'));
  EXPECT_EQ(receiver.airspaces[0].remark, std::string(50, 'r'));
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
      {{}, {"$PBRCTR,3,0,A"}, kCtrNumberMissing},
      {{}, {"$PBRCTR,3,0,A,1x", "$PBRCTR,3,0,A,10000"}, kCtrBadNumber},
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

}  // namespace
}  // namespace skyhaul::flytec
