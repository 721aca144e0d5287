#include "protocols/flytec/waypoint_recogniser.h"

#include "core/units.h"
#include "tests/protocols/flytec/flytec_bench.h"

namespace skyhaul::flytec {
namespace {

// What the last byte of a text gave; every earlier one must have asked for more.
int Feed(WaypointRecogniser& recogniser, const std::string& text) {
  int result = 1;
  for (const char c : text) {
    EXPECT_EQ(result, 1) << text;
    result = FeedWaypointByte(recogniser, static_cast<uint8_t>(c));
  }
  return result;
}

TEST(WaypointRecogniser, TakesRealSentencesAndWhatMayBeLeftOut) {
  // Name, description and altitude stand in one text.
  const std::tuple<std::string, double, double, std::string> cases[] = {
      // Two that real instruments sent.
      {"$PBRWPS,4743.564,N,01121.571,E,URT062,Urthaler Hof     ,0620*03\r\n", 47.72606667,
       11.35951667, "URT062|Urthaler Hof|620"},
      {"$PBRWPS,0425.130,N,07607.610,W,S03095,S03              ,0950*21\r\n", 4.41883333,
       -76.12683333, "S03095|S03|950"},
      {Sentence("PBRWPS,4730.5,S,01100.0,W,,,0"), -47.50833333, -11, "||0"},
      {Sentence("PBRWPS,4730,,01100,,ABC,Only a long name ,-12"), 47.5, 11,
       "ABC|Only a long name|-12"},
      {Sentence("PBRWPS,4730,N,01100,E,ABCDEF"), 47.5, 11, "ABCDEF||0"},
      {Sentence("PBRWPS,8959.999,N,17959.999,E,A,B,99999"), 89.99998333, 179.99998333, "A|B|99999"},
      {Sentence("PBRWPS,4730,N,01100,E,A,B,-9999"), 47.5, 11, "A|B|-9999"},
  };
  for (const auto& [sentence, lat_deg, lon_deg, texts] : cases) {
    WaypointRecogniser recogniser;
    ASSERT_EQ(Feed(recogniser, sentence), 0) << sentence;
    const WaypointRecord& waypoint = recogniser.waypoint;
    EXPECT_NEAR(SemicirclesToDegrees(waypoint.lat), lat_deg, 1e-7) << sentence;
    EXPECT_NEAR(SemicirclesToDegrees(waypoint.lon), lon_deg, 1e-7) << sentence;
    EXPECT_EQ(std::string(waypoint.name) + "|" + waypoint.description + "|" +
                  std::to_string(waypoint.altitude),
              texts);
  }
}

TEST(WaypointRecogniser, EachFaultHasItsNumberAtItsByte) {
  const std::string place = "4743.5,N,01121.5,E,";
  const std::string whole = "4743.564,N,01121.571,E,URT062,Urthaler Hof     ,0620*";
  // The last byte is the wrong one.
  const std::pair<int, Texts> cases[] = {
      {kWaypointLatitudeTooLong, {"8960", "89590"}},
      {kWaypointBadLatitude, {"47x", ",", "."}},
      {kWaypointBadLatitudeFraction, {"4743.5-", "4743.5."}},
      {kWaypointBadLatitudeHemisphere, {"4743.5,E", "4743.5,n"}},
      {kWaypointLatitudeCommaMissing, {"4743.5,NN"}},
      {kWaypointLongitudeTooLong, {"4743.5,N,17960"}},
      {kWaypointBadLongitude, {"4743.5,N,011-"}},
      {kWaypointBadLongitudeHemisphere, {"4743.5,N,01121.5,N"}},
      {kWaypointLineEndInShortName, {place + "AB\r", place + "\n"}},
      {kWaypointShortNameTooLong, {place + "ABCDEFG"}},
      {kWaypointLineEndInLongName, {place + "ABC,De\r"}},
      {kWaypointLongNameTooLong, {place + "ABC,123456789012345678"}},
      {kWaypointBadAltitude, {place + ",,x", place + ",,*", place + ",,--", place + ",,-*"}},
      {kWaypointAltitudeTooLong, {place + ",,123456", place + ",,-12345", place + ",,12,"}},
      {kWaypointBadFirstChecksumDigit, {place + ",,12*g", place + ",,12*a"}},
      {kWaypointBadSecondChecksumDigit, {place + ",,12*0\r"}},
      {kWaypointCrMissing, {place + ",,12*00\n"}},
      {kWaypointChecksumMismatch, {whole + "04\r\n"}},
      {kWaypointLfMissing, {whole + "03\r\r"}},
  };
  for (const auto& [error, texts] : cases) {
    for (const std::string& text : texts) {
      WaypointRecogniser recogniser;
      EXPECT_EQ(Feed(recogniser, "$PBRWPS," + text), -error) << text;
      EXPECT_EQ(Feed(recogniser, Sentence("PBRWPS,4730,N,01100,E,A,B,1")), 0) << text;
    }
  }
}

TEST(WaypointRecogniser, PassesOverOtherSentences) {
  const std::string waypoint = Sentence("PBRWPS,4730,N,01100,E,A,B,1");
  for (const std::string& before :
       {"noise\r\n" + Sentence("PBRSNP,5030,A,1,2"), std::string("$PBR"), std::string("$")}) {
    WaypointRecogniser recogniser;
    EXPECT_EQ(Feed(recogniser, before + waypoint), 0) << before;
  }
}

}  // namespace
}  // namespace skyhaul::flytec
