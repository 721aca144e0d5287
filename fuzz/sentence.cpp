// Both recognisers over arbitrary bytes: a sentence that is accepted must be one that we would have
// sent ourselves, and nothing is ever stored beyond its limit.

#include "protocols/sentence/recogniser.h"

#include "fuzz/frame.h"
#include "protocols/sentence/checksum.h"

namespace skyhaul {

void Fuzz(std::string_view text) {
  SentenceRecogniser any;
  PrefixRecogniser prefixed{.prefix = "$PBRANS,"};
  std::string fed;
  for (const char c : text) {
    const auto byte = static_cast<uint8_t>(c);
    fed += c;
    const int result = FeedSentenceByte(any, byte);
    Require(result <= 1 && result >= -kLfMissing);
    Require(any.text.size() <= kMaxSentenceBody + 1);
    if (result == 0) {
      std::string again = any.text;
      AppendNmeaChecksum(again, again.size() + 6);
      Require(fed.ends_with(again));
    }
    const int status = FeedPrefixedSentenceByte(prefixed, byte);
    Require(status <= 1 && status >= -kLfMissing);
    if (status == 0) Require(fed.find(std::string("$PBRANS,") + prefixed.status) != fed.npos);
    if (status <= 0) Require(prefixed.state == SentenceState::kStart);
  }
}

}  // namespace skyhaul
