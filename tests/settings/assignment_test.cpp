#include "settings/assignment.h"

#include <gtest/gtest.h>

namespace skyhaul {
namespace {

TEST(Assignment, ChecksKindAndSize) {
  const std::string n79(79, 'n');
  const struct {
    std::string text;
    std::string message;  // empty: accepted
  } cases[] = {
      {"IgcSite=", ""},
      {"igcsite=a=b", ""},
      {"IgcSite=" + n79, ""},
      {"IgcSite=n" + n79, "IgcSite must be a text of at most 79 bytes without control characters"},
      {"Baudrate=a\n", "Baudrate must be a text of at most 10 bytes without control characters"},
      {"Port=-2147483648", ""},
      {"Port=2147483648", "Port must be a whole number from -2147483648 to 2147483647"},
      {"Port=", "Port must be a whole number from -2147483648 to 2147483647"},
      {"Port=1 ", "Port must be a whole number from -2147483648 to 2147483647"},
      {"Port", "Missing value: write Port=VALUE"},
      {"Site=x", "There is no setting \"Site\" (\"--settings\" shows them all)"},
      {"=x", "There is no setting \"\" (\"--settings\" shows them all)"},
      {"SkylogPassword", ""},
      {"SkylogPassword=" + std::string(40, 'p'), ""},
      {"SkylogPassword=" + std::string(41, 'p'),
       "SkylogPassword must be a text of at most 40 bytes without control characters"},
  };
  for (const auto& c : cases) {
    Assignment assignment;
    std::string message;
    EXPECT_EQ(ParseAssignment(c.text, assignment, message), c.message.empty() ? 0 : -1) << c.text;
    EXPECT_EQ(message, c.message);
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
