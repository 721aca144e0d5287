#include "core/count_message.h"

#include <gtest/gtest.h>

namespace skyhaul {
namespace {

TEST(CountMessage, FillsTemplatesInOrderAndRepeatsTheFourthNumber) {
  const std::pair<const char*, const char*> cases[] = {
      {"", ""},
      {"no number", "no number"},
      {"Requesting track log %", "Requesting track log 10"},
      {"Track position % (%m %s)", "Track position 10 (0m 4294967295s)"},
      {"%-%-%-%", "10-0-4294967295-7"},
      {"%-%-%-%-%-%", "10-0-4294967295-7-7-7"},
      {"100%%", "100100"},
  };
  for (const auto& [text, expected] : cases) {
    EXPECT_EQ(FormatCountMessage(text, 10, 0, 4294967295U, 7), expected) << text;
  }
}

}  // namespace
}  // namespace skyhaul
