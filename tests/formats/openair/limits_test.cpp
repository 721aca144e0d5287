#include "formats/openair/limits.h"

#include <gtest/gtest.h>

#include <limits>

namespace skyhaul::openair {
namespace {

TEST(OpenAirLimits, SpellingsOfRealFiles) {
  using Reference = LimitReference;
  const struct {
    const char* text;
    Reference reference;
    LimitUnit unit = LimitUnit::kFeet;
    double value = 0;
  } cases[] = {
      {"GND", Reference::kSurface},
      {"sfc", Reference::kSurface},
      {"Surface", Reference::kSurface},
      {"UNL", Reference::kUnlimited},
      {"UNLIM", Reference::kUnlimited},
      {"Unlimited", Reference::kUnlimited},
      {"FL65", Reference::kFlightLevel, LimitUnit::kFeet, 65},
      {"FL 065", Reference::kFlightLevel, LimitUnit::kFeet, 65},
      {"fl195", Reference::kFlightLevel, LimitUnit::kFeet, 195},
      {"FL 65 (MNM ALT 5500FT)", Reference::kFlightLevel, LimitUnit::kFeet, 65},
      {"2500ft AGL", Reference::kGround, LimitUnit::kFeet, 2500},
      {"2500FTAGL", Reference::kGround, LimitUnit::kFeet, 2500},
      {"1000F ASFC", Reference::kGround, LimitUnit::kFeet, 1000},
      {"1000ft GND", Reference::kGround, LimitUnit::kFeet, 1000},
      {"300 m AGL", Reference::kGround, LimitUnit::kMetres, 300},
      {"AGL 500ft", Reference::kGround, LimitUnit::kFeet, 500},
      {"0 AGL", Reference::kGround},
      {"1000 M MSL", Reference::kSea, LimitUnit::kMetres, 1000},
      {"1000MMSL", Reference::kSea, LimitUnit::kMetres, 1000},
      {"4500 MSL", Reference::kSea, LimitUnit::kFeet, 4500},
      {"4500ft AMSL", Reference::kSea, LimitUnit::kFeet, 4500},
      {"4500'", Reference::kSea, LimitUnit::kFeet, 4500},
      {"4500 ALT", Reference::kSea, LimitUnit::kFeet, 4500},
      {"4500.5", Reference::kSea, LimitUnit::kFeet, 4500.5},
      {"-3 m", Reference::kSea, LimitUnit::kMetres, -3},
  };
  for (const auto& c : cases) {
    AirspaceLimit limit;
    EXPECT_EQ(ParseLimit(c.text, limit), 0) << c.text;
    EXPECT_EQ(limit.reference, c.reference) << c.text;
    EXPECT_EQ(limit.unit, c.unit) << c.text;
    EXPECT_EQ(limit.value, c.value) << c.text;
    EXPECT_EQ(LimitText(limit), c.text);
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
  using Reference = LimitReference;
  const struct {
    AirspaceLimit limit;
    const char* text;
  } cases[] = {
      {{.reference = Reference::kSurface}, "GND"},
      {{.reference = Reference::kUnlimited}, "UNLIM"},
      {{.reference = Reference::kFlightLevel, .value = 65}, "FL65"},
      {{.reference = Reference::kGround, .value = 2500}, "2500ft AGL"},
      {{.reference = Reference::kGround, .unit = LimitUnit::kMetres, .value = 0.1}, "0.1m AGL"},
      {{.reference = Reference::kSea, .unit = LimitUnit::kMetres, .value = 1e6}, "1000000m MSL"},
      {{.reference = Reference::kSea, .value = -12.25}, "-12.25ft MSL"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(LimitText(c.limit), c.text);
    AirspaceLimit again;
    EXPECT_EQ(ParseLimit(c.text, again), 0) << c.text;
    EXPECT_EQ(again.reference, c.limit.reference) << c.text;
    EXPECT_EQ(again.unit, c.limit.unit) << c.text;
    EXPECT_EQ(again.value, c.limit.value) << c.text;
  }
  EXPECT_EQ(LimitText({}), "");
  EXPECT_EQ(
      LimitText({.reference = Reference::kSea, .value = std::numeric_limits<double>::infinity()}),
      "0ft MSL");
}

}  // namespace
}  // namespace skyhaul::openair
