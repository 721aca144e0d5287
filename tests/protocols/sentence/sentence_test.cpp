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
  using Texts = std::vector<std::string_view>;
  EXPECT_EQ(SplitFields("a,,c", 5), (Texts{"a", "", "c"}));
  EXPECT_EQ(SplitFields("a,b,c", 2), (Texts{"a", "b,c"}));
  EXPECT_EQ(SplitFields("", 5), Texts{""});
}

TEST(Fields, ParsesUnsignedNumbers) {
  const std::pair<const char*, int64_t> cases[] = {
      // -1: refused.
      {"", 0},
      {"  12 ", 12},
      {"007", 7},
      {"1 2", -1},
      {"-1", -1},
      {"2147483649", 2147483649},
      {"2147483650", -1},
  };
  for (const auto& [text, expected] : cases) {
    uint32_t value = 99;
    EXPECT_EQ(ParseUintField(text, value), expected < 0 ? -1 : 0) << text;
    EXPECT_EQ(value, expected < 0 ? 99 : expected) << text;
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
  constexpr double kRefused = 1000;
  const std::tuple<decltype(&ParseLatitude), const char*, const char*, double> cases[] = {
      {ParseLatitude, "4743.564", "N", 47.72606667},    {ParseLatitude, "4743", "", 47.71666667},
      {ParseLatitude, "8959.999", "S", -89.99998333},   {ParseLatitude, "8960", "N", kRefused},
      {ParseLatitude, "4743.564", "W", kRefused},       {ParseLatitude, "4743.5", "NN", kRefused},
      {ParseLongitude, "17959.999", "E", 179.99998333}, {ParseLongitude, "17960", "W", kRefused},
  };
  for (const auto& [parse, digits, hemisphere, degrees] : cases) {
    double rad = kRefused / kDegreesPerRadian;
    EXPECT_EQ(parse(digits, hemisphere, rad), degrees == kRefused ? -1 : 0) << digits;
    EXPECT_NEAR(rad * kDegreesPerRadian, degrees, 1e-7) << digits;
  }
}

std::string Sentence(std::string body, size_t capacity = 200) {
  AppendNmeaChecksum(body, capacity);
  return body;
}

TEST(SentenceRecogniser, TellsEachFaultByItsNumber) {
  const std::tuple<const char*, std::string, std::vector<int>> cases[] = {
      {"noise, and two", "xx*12\r\n$PBRANS,1*01\r\n$PBRANS,1*01\r\n", {0, 0}},
      {"81 characters", Sentence("$" + std::string(81, 'x')), {0}},
      {"82 characters", "$" + std::string(82, 'x'), {-kSentenceTooLong}},
      {"lower case first digit", "$PBRTR,08*d1", {-kBadFirstChecksumDigit}},
      {"lower case second digit", "$PBRTR,00*6a", {-kBadSecondChecksumDigit}},
      {"no CR", "$PBRANS,1*01\n", {-kCrMissing}},
      {"no LF", "$PBRANS,1*01\rx", {-kLfMissing}},
      {"wrong, then sound", "$PBRANS,2*01\r\n$PBRANS,1*01\r\n", {-kChecksumMismatch, 0}},
      {"dollar inside", Sentence("$A$B"), {0}},
  };
  for (const auto& [what, bytes, results] : cases) {
    SentenceRecogniser recogniser;
    std::vector<int> ends;  // results that are not "more"
    for (const char c : bytes) {
      const int result = FeedSentenceByte(recogniser, static_cast<uint8_t>(c));
      if (result != 1) ends.push_back(result);
    }
    EXPECT_EQ(ends, results) << what;
  }
}

TEST(Checksum, IsAppendedAsFarAsItFits) {
  EXPECT_EQ(Sentence("$PBRTR,07"), "$PBRTR,07*6D\r\n");
  EXPECT_EQ(Sentence("$PBRTL,", 11), "$PBRTL,*74");
}

TEST(LineCollector, CollectsFromDollarToCarriageReturn) {
  LineCollector collector;
  collector.limit = 10;
  std::vector<std::string> lines;
  for (const char c :
       std::string("noise\r\n$A,1*00\r\n\x11$A\n$B\rdropped\n$123456789012\r\n$C\r")) {
    if (CollectLineByte(collector, static_cast<uint8_t>(c))) lines.push_back(collector.line);
  }
  EXPECT_EQ(lines, (std::vector<std::string>{"$A,1*00", "$A", "$B", "$123456789"}));
}

}  // namespace
}  // namespace skyhaul
