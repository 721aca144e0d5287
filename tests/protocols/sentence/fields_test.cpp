#include "protocols/sentence/fields.h"

#include <gtest/gtest.h>

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

}  // namespace
}  // namespace skyhaul
