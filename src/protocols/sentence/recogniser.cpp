#include "protocols/sentence/recogniser.h"

#include "protocols/sentence/checksum.h"

namespace skyhaul {

namespace {

uint8_t Xor(uint8_t left, uint8_t right) {
  return static_cast<uint8_t>(left ^ right);
}

// What follows the '*' is the same for every sentence.
template <typename Recogniser>
int FeedTail(Recogniser& recogniser, uint8_t byte) {
  switch (recogniser.state) {
    case SentenceState::kFirstDigit: {
      const int digit = UpperHexValue(byte);
      if (digit < 0) return -kBadFirstChecksumDigit;
      recogniser.received = static_cast<uint8_t>(digit << 4);
      recogniser.state = SentenceState::kSecondDigit;
      return 1;
    }
    case SentenceState::kSecondDigit: {
      const int digit = UpperHexValue(byte);
      if (digit < 0) return -kBadSecondChecksumDigit;
      recogniser.received = static_cast<uint8_t>(recogniser.received | digit);
      recogniser.state = SentenceState::kCarriageReturn;
      return 1;
    }
    case SentenceState::kCarriageReturn:
      if (byte != '\r') return -kCrMissing;
      recogniser.state = SentenceState::kLineFeed;
      return 1;
    default:
      if (byte != '\n') return -kLfMissing;
      // Compared at the very end, so that a sentence with a broken end is reported as that.
      if (recogniser.received != recogniser.computed) return -kChecksumMismatch;
      recogniser.state = SentenceState::kStart;
      return 0;
  }
}

template <typename Recogniser>
int BackToStartOnError(Recogniser& recogniser, int result) {
  if (result < 0) recogniser.state = SentenceState::kStart;
  return result;
}

int FeedBody(SentenceRecogniser& recogniser, uint8_t byte) {
  // The sum as it was before the asterisk, which is not part of it.
  if (byte == '*') {
    recogniser.computed = recogniser.running_xor;
    recogniser.state = SentenceState::kFirstDigit;
    return 1;
  }
  // The text holds the '$' too.
  if (recogniser.text.size() > kMaxSentenceBody) return -kSentenceTooLong;
  recogniser.running_xor = Xor(recogniser.running_xor, byte);
  recogniser.text += static_cast<char>(byte);
  return 1;
}

int FeedPrefix(PrefixRecogniser& recogniser, uint8_t byte) {
  if (byte != static_cast<uint8_t>(recogniser.prefix[recogniser.prefix_index])) {
    return -kPrefixMismatch;
  }
  if (++recogniser.prefix_index == recogniser.prefix.size()) {
    recogniser.state = SentenceState::kStatus;
  }
  return 1;
}

}  // namespace

int FeedSentenceByte(SentenceRecogniser& recogniser, uint8_t byte) {
  switch (recogniser.state) {
    case SentenceState::kStart:
      if (byte != '$') return 1;
      recogniser.text = "$";
      recogniser.running_xor = 0;
      recogniser.state = SentenceState::kBody;
      return 1;
    case SentenceState::kBody:
      return BackToStartOnError(recogniser, FeedBody(recogniser, byte));
    default:
      return BackToStartOnError(recogniser, FeedTail(recogniser, byte));
  }
}

int FeedPrefixedSentenceByte(PrefixRecogniser& recogniser, uint8_t byte) {
  const uint8_t before = recogniser.running_xor;
  recogniser.running_xor = Xor(before, byte);
  switch (recogniser.state) {
    case SentenceState::kStart:
      // Noise before a sentence is no fault.
      if (byte != static_cast<uint8_t>(recogniser.prefix[0])) return 1;
      recogniser.running_xor = 0;
      recogniser.prefix_index = 1;
      recogniser.state = SentenceState::kPrefix;
      return 1;
    case SentenceState::kPrefix:
      return BackToStartOnError(recogniser, FeedPrefix(recogniser, byte));
    case SentenceState::kStatus:
      // Whatever follows the status until the asterisk counts in the checksum and is not kept.
      recogniser.status = static_cast<char>(byte);
      recogniser.state = SentenceState::kBody;
      return 1;
    case SentenceState::kBody:
      if (byte != '*') return 1;
      recogniser.computed = before;
      recogniser.state = SentenceState::kFirstDigit;
      return 1;
    default:
      return BackToStartOnError(recogniser, FeedTail(recogniser, byte));
  }
}

}  // namespace skyhaul
