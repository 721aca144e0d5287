#include "app/command_line/score_options.h"

#include <gtest/gtest.h>

#include <string>

namespace skyhaul {
namespace {

TEST(Score, SettingsFromText) {
  const struct {
    const char* gap;
    int result;
    int32_t gap_m;
  } gaps[] = {
      {"0", 0, 0},     {"1000000", 0, 1000000}, {"1000001", -1, 77}, {"-1", -1, 77},
      {"1.5", -1, 77}, {"x", -1, 77},           {"", -1, 77},
  };
  for (const auto& c : gaps) {
    OptimiseSettings settings = {.gap_m = 77};
    std::string message;
    EXPECT_EQ(ReadGap(c.gap, settings, message), c.result) << c.gap;
    EXPECT_EQ(message.empty(), c.result == 0);
    EXPECT_EQ(settings.gap_m, c.gap_m);
  }
  OptimiseSettings settings;
  std::string message;
  EXPECT_EQ(ReadFaiRule("on", settings, message), 0);
  EXPECT_TRUE(settings.fai_rule);
  for (const char* bad : {"yes", "", "ON"}) {
    EXPECT_EQ(ReadFaiRule(bad, settings, message), -1);
    EXPECT_NE(message, "");
    EXPECT_TRUE(settings.fai_rule) << "left as it was";
  }
  EXPECT_EQ(ReadFaiRule("off", settings, message), 0);
  EXPECT_FALSE(settings.fai_rule);
}

}  // namespace
}  // namespace skyhaul
