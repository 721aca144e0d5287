#include "formats/openair/limits.h"

#include <gtest/gtest.h>

#include <limits>

namespace skyhaul::openair {
namespace {

using Reference = LimitReference;

TEST(OpenAirLimits, SpellingsOfRealFiles) {
  const struct {
    Reference reference;
    LimitUnit unit;
    double value;
    std::vector<const char*> texts;
  } cases[] = {
      {Reference::kSurface, LimitUnit::kFeet, 0, {"GND", "sfc", "Surface"}},
      {Reference::kUnlimited, LimitUnit::kFeet, 0, {"UNL", "UNLIM", "Unlimited"}},
      {Reference::kFlightLevel, LimitUnit::kFeet, 65, {"FL65", "fl 065", "FL 65 (MNM ALT 5500FT)"}},
      {Reference::kGround, LimitUnit::kFeet, 2500, {"2500ft AGL", "2500FTAGL", "AGL 2500ft"}},
      {Reference::kGround, LimitUnit::kFeet, 1000, {"1000F ASFC", "1000ft GND"}},
      {Reference::kGround, LimitUnit::kMetres, 300, {"300 m AGL"}},
      {Reference::kGround, LimitUnit::kFeet, 0, {"0 AGL"}},
      {Reference::kSea, LimitUnit::kMetres, 1000, {"1000 M MSL", "1000MMSL"}},
      {Reference::kSea, LimitUnit::kFeet, 4500, {"4500 MSL", "4500ft AMSL", "4500'", "4500 ALT"}},
      {Reference::kSea, LimitUnit::kFeet, 4500.5, {"4500.5"}},
      {Reference::kSea, LimitUnit::kMetres, -3, {"-3 m"}},
  };
  for (const auto& c : cases) {
    for (const char* text : c.texts) {
      AirspaceLimit limit;
      EXPECT_EQ(ParseLimit(text, limit), 0) << text;
      EXPECT_EQ(limit.reference, c.reference) << text;
      EXPECT_EQ(limit.unit, c.unit) << text;
      EXPECT_EQ(limit.value, c.value) << text;
      EXPECT_EQ(LimitText(limit), text);
    }
  }
  // A control character is a blank to the reader as it is to the writer.
  AirspaceLimit limit;
  EXPECT_EQ(ParseLimit("FL\v65\f", limit), 0);
  EXPECT_EQ(limit.text, "FL 65");
}

TEST(OpenAirLimits, WhatIsNotUnderstoodKeepsItsText) {
  const char* const cases[] = {
      "Ask on 122.8", "see NOTAM", "FL",        "AGL",
      "MSL",          "65 FL ft",  "FL65 FL75", "2,500 ft",
      "ft",           "1000 2000", "UNLIM 500", "1000ft/6500ft AGL/AMSL",
      "FL65-FL100",   "inf ft",    "1e5",       "9999999 ft",
      "(4500ft)",     "--3m",      "-",         "",
  };
  for (const char* text : cases) {
    AirspaceLimit limit = {.reference = LimitReference::kSea, .value = 7};
    EXPECT_EQ(ParseLimit(text, limit), -1) << text;
    EXPECT_EQ(limit.reference, LimitReference::kNotGiven) << text;
    EXPECT_EQ(limit.value, 0) << text;
    EXPECT_EQ(LimitText(limit), text);
  }
}

TEST(OpenAirLimits, ComposedTextIsReadBack) {
  const std::pair<AirspaceLimit, const char*> cases[] = {
      {{.reference = Reference::kSurface}, "GND"},
      {{.reference = Reference::kUnlimited}, "UNLIM"},
      {{.reference = Reference::kFlightLevel, .value = 65}, "FL65"},
      {{.reference = Reference::kGround, .value = 2500}, "2500ft AGL"},
      {{.reference = Reference::kGround, .unit = LimitUnit::kMetres, .value = 0.1}, "0.1m AGL"},
      {{.reference = Reference::kSea, .unit = LimitUnit::kMetres, .value = 1e6}, "1000000m MSL"},
      {{.reference = Reference::kSea, .value = -12.25}, "-12.25ft MSL"},
  };
  for (const auto& [limit, text] : cases) {
    EXPECT_EQ(LimitText(limit), text);
    AirspaceLimit again;
    EXPECT_EQ(ParseLimit(text, again), 0) << text;
    EXPECT_EQ(again.reference, limit.reference) << text;
    EXPECT_EQ(again.unit, limit.unit) << text;
    EXPECT_EQ(again.value, limit.value) << text;
  }
  EXPECT_EQ(LimitText({}), "");
  EXPECT_EQ(
      LimitText({.reference = Reference::kSea, .value = std::numeric_limits<double>::infinity()}),
      "0ft MSL");
}

}  // namespace
}  // namespace skyhaul::openair
