#include "settings/assignment.h"

#include <gtest/gtest.h>

namespace skyhaul {
namespace {

TEST(Assignment, ChecksKindAndSize) {
  const std::string n79(79, 'n');
  const std::pair<std::string, std::string> cases[] = {
      // Empty: accepted.
      {"IgcSite=", ""},
      {"IgcSite=" + n79, ""},
      {"IgcSite=n" + n79, "IgcSite must be a text of at most 79 bytes without control characters"},
      {"Baudrate=a\n", "Baudrate must be a text of at most 10 bytes without control characters"},
      {"Port=1 ", "Port must be a whole number from -2147483648 to 2147483647"},
      {"Port", "Missing value: write Port=VALUE"},
      {"Site=x", "There is no setting \"Site\" (\"--settings\" shows them all)"},
      {"SkylogPassword=" + std::string(40, 'p'), ""},
      {"SkylogPassword=" + std::string(41, 'p'),
       "SkylogPassword must be a text of at most 40 bytes without control characters"},
  };
  for (const auto& [text, problem] : cases) {
    Assignment assignment;
    std::string message;
    EXPECT_EQ(ParseAssignment(text, assignment, message), problem.empty() ? 0 : -1) << text;
    EXPECT_EQ(message, problem);
  }
}

TEST(Assignment, GivesTheValue) {
  Assignment assignment;
  std::string message;
  ASSERT_EQ(ParseAssignment("loopflightgap=-2", assignment, message), 0);
  SettingValues values;
  SetSettingBytes(*assignment.setting, assignment.bytes, values);
  EXPECT_EQ(values.loop_flight_gap_m, -2);
  ASSERT_EQ(ParseAssignment("IgcSite=a=b ", assignment, message), 0);
  SetSettingBytes(*assignment.setting, assignment.bytes, values);
  EXPECT_EQ(values.igc_site, "a=b ");
  EXPECT_TRUE(assignment.has_value);
  ASSERT_EQ(ParseAssignment("SkylogPassword", assignment, message), 0);
  EXPECT_FALSE(assignment.has_value);
}

}  // namespace
}  // namespace skyhaul
