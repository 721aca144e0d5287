#include "formats/values/iso_time.h"

#include <gtest/gtest.h>

#include "tests/formats/values/sample_waypoints.h"

namespace skyhaul {
namespace {

TEST(ReadIsoTime, TakesWhatFilesHold) {
  const std::pair<const char*, uint32_t> cases[] = {
      {"2024-05-01T12:34:56Z", kMay2024},
      {"  2024-05-01T12:34:56z ", kMay2024},
      {"2024-05-01T12:34:56", kMay2024},
      {"2024-05-01T12:34:56.987654Z", kMay2024},
      {"2024-05-01T14:34:56+02:00", kMay2024},
      {"2024-05-01T07:04:56.5-0530", kMay2024},
      {"2024-05-02T00:34:56+12:00", kMay2024},
      {"2016-12-31T23:59:60Z", 852163199},  // a leap second
      {"2024-02-29T00:00:00Z", kMay2024 - 62 * 86400 - 45296},
      {"1989-12-31T00:00:01Z", 1},
      {"1989-12-31T00:30:00+01:00", 0},
  };
  for (const auto& [text, time] : cases) EXPECT_EQ(ReadIsoTime(text), time) << text;
}

TEST(ReadIsoTime, RefusesWhatIsNoTime) {
  const char* const cases[] = {"",
                               "2024",
                               "2024-05-01",
                               "2024-05-01 12:34:56",
                               "2024-13-01T12:34:56Z",
                               "2024-00-01T12:34:56Z",
                               "2023-02-29T12:34:56Z",
                               "2024-04-31T12:34:56Z",
                               "2024-05-00T12:34:56Z",
                               "2024-05-01T24:34:56Z",
                               "2024-05-01T12:60:56Z",
                               "2024-05-01T12:34:61Z",
                               "2024-05-01T12:34:56X",
                               "2024-05-01T12:34:56+2",
                               "2024-05-01T12:34:56+15:00",
                               "1989-12-30T23:59:59Z",
                               "1970-01-01T00:00:00Z",
                               "2126-01-01T00:00:00Z",
                               "9999-12-31T23:59:59Z",
                               "+024-05-01T12:34:56Z",
                               "20x4-05-01T12:34:56Z"};
  for (const char* text : cases) EXPECT_EQ(ReadIsoTime(text), 0U) << text;
}

TEST(AppendIsoTime, WritesMillisecondsOnlyWhereThereAreSome) {
  std::string text;
  AppendIsoTime(text, kMay2024, 0);
  text += ' ';
  AppendIsoTime(text, 1, 7);
  EXPECT_EQ(text, "2024-05-01T12:34:56Z 1989-12-31T00:00:01.007Z");
}

}  // namespace
}  // namespace skyhaul
