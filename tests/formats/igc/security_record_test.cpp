#include "formats/igc/security_record.h"

#include <gtest/gtest.h>

#include "formats/igc/write_igc.h"

namespace skyhaul::igc {
namespace {

std::string SignedText() {
  const TrackPoint point = {.segment_start = 1, .time = 1'000'000'000, .lat = 5, .lon = 6};
  std::string text;
  Write({&point, 1}, {.pilot = "Ada"}, {.sign = true, .may_be_signed = true}, text);
  return text;
}

TEST(SecurityRecord, DigestIsTheUsualCyclicRedundancyCheck) {
  SecurityDigest digest;
  UpdateDigest(digest, "12345");
  UpdateDigest(digest, "6789");
  // The published check value of this polynomial is 0xCBF43926, complemented at the end.
  EXPECT_EQ(digest.value, ~0xcbf43926U);
}

TEST(CheckSecurityRecord, FindsEverySingleChangedByte) {
  const std::string text = SignedText();
  ASSERT_EQ(CheckSecurityRecord(text), SecurityCheck::kPassed);
  const size_t record = text.rfind('G');
  for (size_t at = 0; at < text.size(); ++at) {
    // Without its letter, or without the line end before it, there is no G record left to fail.
    const SecurityCheck expected =
        at == record || at == record - 1 ? SecurityCheck::kNoRecord : SecurityCheck::kFailed;
    for (unsigned change = 1; change < 256; ++change) {
      std::string changed = text;
      changed[at] = static_cast<char>(static_cast<unsigned char>(text[at]) ^ change);
      ASSERT_EQ(CheckSecurityRecord(changed), expected) << "byte " << at << " change " << change;
    }
  }
}

TEST(CheckSecurityRecord, JudgesWholeTexts) {
  const std::string text = SignedText();
  const std::tuple<const char*, std::string, SecurityCheck> cases[] = {
      {"blank lines after it", text + "\r\n  \r\n", SecurityCheck::kPassed},
      {"a line after it", text + "LXSH more\r\n", SecurityCheck::kFailed},
      {"cut off", text.substr(0, text.size() - 2), SecurityCheck::kFailed},
      {"record of nothing", SecurityRecord({}) + "\r\n", SecurityCheck::kPassed},
  };
  for (const auto& [what, judged, expected] : cases) {
    EXPECT_EQ(CheckSecurityRecord(judged), expected) << what;
  }
}

}  // namespace
}  // namespace skyhaul::igc
