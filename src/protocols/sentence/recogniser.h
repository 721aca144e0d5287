#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace skyhaul {

// Error numbers of the recognisers below; a driver shows them in its "Format error %".
enum SentenceError : int {
  kSentenceTooLong = 1,
  kPrefixMismatch = 1,
  kBadFirstChecksumDigit = 2,
  kBadSecondChecksumDigit = 3,
  kCrMissing = 4,
  kChecksumMismatch = 5,
  kLfMissing = 6,
};

// The largest number of characters between '$' and '*'.
inline constexpr size_t kMaxSentenceBody = 81;

enum class SentenceState : uint8_t {
  kStart,
  kPrefix,
  kStatus,
  kBody,
  kFirstDigit,
  kSecondDigit,
  kCarriageReturn,
  kLineFeed,
};

// Recognises any sentence: "$" body "*" two upper-case hexadecimal digits CR LF. Flow-control bytes
// must not be fed. After an error the recogniser is back at its start.
struct SentenceRecogniser {
  SentenceState state = SentenceState::kStart;
  uint8_t running_xor = 0;
  uint8_t computed = 0;  // the running XOR as it was at '*'
  uint8_t received = 0;
  std::string text;  // "$" and the body; whole when a sentence is complete
};

// Feeds one byte. Returns 1 (more needed), 0 (one sentence complete, checksum right; it stays in
// recogniser.text until the next '$'), or -n with n a SentenceError.
int FeedSentenceByte(SentenceRecogniser& recogniser, uint8_t byte);

// Recognises sentences that begin with one fixed prefix, such as "$PBRANS,", and keeps only the
// character after it.
struct PrefixRecogniser {
  std::string_view prefix;  // begins with '$'; set by the owner before the first byte
  SentenceState state = SentenceState::kStart;
  size_t prefix_index = 0;
  uint8_t running_xor = 0;
  uint8_t computed = 0;
  uint8_t received = 0;
  char status = 0;
};

// As FeedSentenceByte; when it returns 0 the status character is in recogniser.status.
int FeedPrefixedSentenceByte(PrefixRecogniser& recogniser, uint8_t byte);

}  // namespace skyhaul
