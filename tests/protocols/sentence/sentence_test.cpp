#include <gtest/gtest.h>

#include "core/units.h"
#include "protocols/sentence/checksum.h"
#include "protocols/sentence/fields.h"
#include "protocols/sentence/line_collector.h"
#include "protocols/sentence/positions.h"
#include "protocols/sentence/recogniser.h"

namespace skyhaul {
namespace {

TEST(Fields, CutsAtCommas) {
  std::string_view rest = "a,,b";
  std::string_view field;
  ASSERT_TRUE(SplitField(rest, field));
  EXPECT_EQ(field, "a");
  ASSERT_TRUE(SplitField(rest, field));
  EXPECT_EQ(field, "");
  EXPECT_FALSE(SplitField(rest, field));
  EXPECT_EQ(rest, "b");
  rest = "";
  EXPECT_FALSE(SplitField(rest, field));

  using Texts = std::vector<std::string_view>;
  EXPECT_EQ(SplitFields("a,b,c", 5), (Texts{"a", "b", "c"}));
  EXPECT_EQ(SplitFields("a,b,c", 2), (Texts{"a", "b,c"}));
  EXPECT_EQ(SplitFields("", 5), Texts{""});
}

TEST(Fields, ParsesUnsignedNumbers) {
  const struct {
    const char* text;
    int64_t value;  // -1: refused
  } cases[] = {
      {"", 0},
      {"   ", 0},
      {"  12 ", 12},
      {"007", 7},
      {"1 2", -1},
      {"-1", -1},
      {"1x", -1},
      {"2147483649", 2147483649},
      {"21474836490", -1},
      {"2147483650", -1},
      {"214748365", 214748365},
      {"2147483640", 2147483640},
  };
  for (const auto& c : cases) {
    uint32_t value = 99;
    EXPECT_EQ(ParseUintField(c.text, value), c.value < 0 ? -1 : 0) << c.text;
    EXPECT_EQ(value, c.value < 0 ? 99 : c.value) << c.text;
  }
}

TEST(Positions, AreWrittenRoundedWithTheHemisphereOfTheSign) {
  const std::tuple<double, const char*, const char*> cases[] = {
      {0, "0000.000,N", "00000.000,E"},           {-0.0000001, "0000.000,S", "00000.000,W"},
      {47.72606666, "4743.564,N", "04743.564,E"}, {-7.99999999, "0800.000,S", "00800.000,W"},
      {90, "9000.000,N", "09000.000,E"},          {0.00000917, "0000.001,N", "00000.001,E"},
  };
  for (const auto& [degrees, latitude, longitude] : cases) {
    EXPECT_EQ(FormatLatitude(degrees, kMilliminutesPerDegree), latitude);
    EXPECT_EQ(FormatLongitude(degrees, kMilliminutesPerDegree), longitude);
    EXPECT_EQ(FormatLatitude(degrees / kDegreesPerRadian, kMilliminutesPerRadian), latitude);
  }
  EXPECT_EQ(FormatLongitude(-180, kMilliminutesPerDegree), "18000.000,W");
}

TEST(Positions, AreReadWithinTheirLimits) {
  const struct {
    const char *digits, *hemisphere;
    double latitude_deg;  // 1000: refused
    double longitude_deg;
  } cases[] = {
      {"4743.564", "N", 47.72606667, 1000},
      {"4743.564", "W", 1000, -47.72606667},
      {"0425.130", "S", -4.41883333, 1000},
      {"01121.571", "E", 1000, 11.35951667},
      {"4743", "", 47.71666667, 47.71666667},
      {"8959.999", "N", 89.99998333, 1000},
      {"9000.000", "", 1000, 90},
      {"17959.999", "E", 1000, 179.99998333},
      {"", "N", 1000, 1000},
      {"8960", "N", 1000, 1000},
      {"17960", "", 1000, 1000},
      {"47a", "N", 1000, 1000},
      {"4743.5", "NN", 1000, 1000},
  };
  for (const auto& c : cases) {
    double rad = 1000 / kDegreesPerRadian;
    const int latitude = ParseLatitude(c.digits, c.hemisphere, rad);
    EXPECT_EQ(latitude, c.latitude_deg == 1000 ? -1 : 0) << c.digits;
    EXPECT_NEAR(rad * kDegreesPerRadian, c.latitude_deg, 1e-7) << c.digits;
    rad = 1000 / kDegreesPerRadian;
    const int longitude = ParseLongitude(c.digits, c.hemisphere, rad);
    EXPECT_EQ(longitude, c.longitude_deg == 1000 ? -1 : 0) << c.digits;
    EXPECT_NEAR(rad * kDegreesPerRadian, c.longitude_deg, 1e-7) << c.digits;
  }
}

template <typename Recogniser>
std::vector<int> FeedAll(Recogniser& recogniser, const std::string& bytes,
                         int (*feed)(Recogniser&, uint8_t)) {
  std::vector<int> ends;  // results that are not "more"
  for (const char c : bytes) {
    const int result = feed(recogniser, static_cast<uint8_t>(c));
    if (result != 1) ends.push_back(result);
  }
  return ends;
}

std::string Sentence(const std::string& body) {
  std::string sentence = "$" + body;
  AppendNmeaChecksum(sentence, 200);
  return sentence;
}

using Results = std::vector<int>;

TEST(SentenceRecogniser, TellsEachFaultByItsNumber) {
  const std::tuple<const char*, std::string, Results> cases[] = {
      {"published example",
       "$PBRWPS,4743.564,N,01121.571,E,URT062,Urthaler Hof     ,0620*03\r\n",
       {0}},
      {"noise before it", "xx*12\r\n$PBRANS,1*01\r\n", {0}},
      {"two sentences", "$PBRANS,1*01\r\n$PBRANS,1*01\r\n", {0, 0}},
      {"81 characters", Sentence(std::string(81, 'x')), {0}},
      {"82 characters", "$" + std::string(82, 'x'), {-kSentenceTooLong}},
      {"lower case first digit", "$PBRTR,08*d1", {-kBadFirstChecksumDigit}},
      {"lower case second digit", "$PBRTR,00*6a", {-kBadSecondChecksumDigit}},
      {"no digit", "$PBRTR,00*G", {-kBadFirstChecksumDigit}},
      {"no CR", "$PBRANS,1*01\n", {-kCrMissing}},
      {"no LF", "$PBRANS,1*01\rx", {-kLfMissing}},
      {"wrong checksum", "$PBRANS,2*01\r\n", {-kChecksumMismatch}},
      {"goes on after a fault", "$PBRANS,2*01\r\n$PBRANS,1*01\r\n", {-kChecksumMismatch, 0}},
      {"dollar inside", Sentence("A$B"), {0}},
      {"empty body", "$*00\r\n", {0}},
  };
  for (const auto& [what, bytes, results] : cases) {
    SentenceRecogniser recogniser;
    EXPECT_EQ(FeedAll(recogniser, bytes, FeedSentenceByte), results) << what;
  }
  SentenceRecogniser recogniser;
  FeedAll(recogniser, "$PBRANS,1*01\r\n", FeedSentenceByte);
  EXPECT_EQ(recogniser.text, "$PBRANS,1");
}

TEST(PrefixRecogniser, TellsEachFaultByItsNumberAndKeepsTheStatus) {
  // What comes after the asterisk is for the recogniser above, which takes the same bytes.
  const std::tuple<std::string, Results, char> cases[] = {
      {"$PBRANS,1*01\r\n", {0}, '1'},
      {"A\r\n$PBRANS,3*03\r\n", {0}, '3'},
      {Sentence("PBRANS,2 because"), {0}, '2'},
      {"$PBRTL,1*00\r\n$PBRANS,1*01\r\n", {-kPrefixMismatch, 0}, '1'},
      {"$PBRANS,1*02\r\n$PBRANS,3*03\r\n", {-kChecksumMismatch, 0}, '3'},
  };
  for (const auto& [bytes, results, status] : cases) {
    PrefixRecogniser recogniser{.prefix = "$PBRANS,"};
    EXPECT_EQ(FeedAll(recogniser, bytes, FeedPrefixedSentenceByte), results) << bytes;
    EXPECT_EQ(recogniser.status, status) << bytes;
  }
}

TEST(Checksum, IsAppendedAsFarAsItFits) {
  const std::tuple<const char*, size_t, const char*> cases[] = {
      {"$PBRTL,", 85, "$PBRTL,*74\r\n"},
      {"$PBRTR,07", 85, "$PBRTR,07*6D\r\n"},
      {"$PBRTL,", 11, "$PBRTL,*74"},
      {"", 85, "*00\r\n"},
  };
  for (const auto& [body, capacity, expected] : cases) {
    std::string sentence = body;
    AppendNmeaChecksum(sentence, capacity);
    EXPECT_EQ(sentence, expected);
  }
}

TEST(LineCollector, CollectsFromDollarToCarriageReturn) {
  const std::pair<const char*, std::vector<std::string>> cases[] = {
      {"noise\r\n$A,1*00\r\n\x11", {"$A,1*00"}},
      {"$A\n$B\r\n", {"$A", "$B"}},
      {"$A\rdropped\n$B\r\n", {"$A", "$B"}},
      {"$123456789012\r\n", {"$123456789"}},
      {"$A\r", {}},
  };
  for (const auto& [bytes, expected] : cases) {
    LineCollector collector;
    collector.limit = 10;
    std::vector<std::string> lines;
    for (const char* at = bytes; *at != 0; ++at) {
      if (CollectLineByte(collector, static_cast<uint8_t>(*at))) lines.push_back(collector.line);
    }
    EXPECT_EQ(lines, expected) << bytes;
  }
}

}  // namespace
}  // namespace skyhaul
