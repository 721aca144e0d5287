#include "formats/openair/limits.h"

#include <gtest/gtest.h>

#include <cmath>

namespace skyhaul::openair {
namespace {

using Reference = LimitReference;

AirspaceLimit Parsed(const std::string& text) {
  AirspaceLimit limit = {.reference = LimitReference::kSea, .value = 7};
  const int result = ParseLimit(text, limit);
  EXPECT_EQ(result, limit.reference == Reference::kNotGiven ? -1 : 0) << text;
  return limit;
}

// The first text of each is the writer's, the others are those of real files.
TEST(OpenAirLimits, SpellingsOfRealFiles) {
  constexpr LimitUnit kMetres = LimitUnit::kMetres;
  const std::pair<AirspaceLimit, std::vector<std::string>> cases[] = {
      {{.reference = Reference::kSurface}, {"GND", "sfc", "Surface"}},
      {{.reference = Reference::kUnlimited}, {"UNLIM", "UNL", "Unlimited"}},
      {{.reference = Reference::kFlightLevel, .value = 65},
       {"FL65", "fl 065", "FL 65 (MNM ALT 5500FT)"}},
      {{.reference = Reference::kGround, .value = 2500},
       {"2500ft AGL", "2500FTAGL", "AGL 2500ft", "2500F ASFC", "2500ft GND"}},
      {{.reference = Reference::kGround, .unit = kMetres, .value = 0.1}, {"0.1m AGL", "0.1 m AGL"}},
      {{.reference = Reference::kGround}, {"0ft AGL", "0 AGL"}},
      {{.reference = Reference::kSea, .unit = kMetres, .value = 1e6},
       {"1000000m MSL", "1000000 M MSL", "1000000MMSL"}},
      {{.reference = Reference::kSea, .value = 4500.5},
       {"4500.5ft MSL", "4500.5 MSL", "4500.5ft AMSL", "4500.5'", "4500.5 ALT", "4500.5"}},
      {{.reference = Reference::kSea, .unit = kMetres, .value = -3}, {"-3m MSL", "-3 m"}},
  };
  for (const auto& [limit, texts] : cases) {
    EXPECT_EQ(LimitText(limit), texts[0]);
    for (const std::string& text : texts) {
      AirspaceLimit expected = limit;
      expected.text = text;
      EXPECT_EQ(Parsed(text), expected) << text;
      EXPECT_EQ(LimitText(expected), text);
    }
  }
  // A control character is a blank to the reader as it is to the writer.
  EXPECT_EQ(Parsed("FL\v65\f"), Parsed("FL 65"));
  EXPECT_EQ(LimitText({.reference = Reference::kSea, .value = HUGE_VAL}), "0ft MSL");
}

TEST(OpenAirLimits, WhatIsNotUnderstoodKeepsItsText) {
  for (const char* text : {"see NOTAM", "FL", "AGL", "65 FL ft", "FL65 FL75", "2,500 ft", "ft",
                           "1000 2000", "UNLIM 500", "1000ft/6500ft AGL/AMSL", "FL65-FL100",
                           "inf ft", "1e5", "9999999 ft", "(4500ft)", "--3m", ""}) {
    EXPECT_EQ(Parsed(text), AirspaceLimit{.text = text}) << text;
    EXPECT_EQ(LimitText({.text = text}), text);
  }
}

}  // namespace
}  // namespace skyhaul::openair
