// Both recognisers over arbitrary bytes: a sentence that is accepted must be one that we would have
// sent ourselves, and nothing is ever stored beyond its limit.

#include "protocols/sentence/recogniser.h"

#include <cstddef>
#include <cstdint>
#include <string>

#include "protocols/sentence/checksum.h"

namespace {

void Require(bool holds) {
  if (!holds) __builtin_trap();
}

bool EndsWith(const std::string& text, const std::string& end) {
  return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace skyhaul;
  SentenceRecogniser any;
  PrefixRecogniser prefixed{.prefix = "$PBRANS,"};
  std::string fed;
  for (size_t i = 0; i < size; ++i) {
    fed += static_cast<char>(data[i]);
    const int result = FeedSentenceByte(any, data[i]);
    Require(result <= 1 && result >= -kLfMissing);
    Require(any.text.size() <= kMaxSentenceBody + 1);
    if (result == 0) {
      std::string again = any.text;
      AppendNmeaChecksum(again, again.size() + 6);
      Require(EndsWith(fed, again));
    }
    const int status = FeedPrefixedSentenceByte(prefixed, data[i]);
    Require(status <= 1 && status >= -kLfMissing);
    if (status == 0) Require(fed.find(std::string("$PBRANS,") + prefixed.status) != fed.npos);
    if (status <= 0) Require(prefixed.state == SentenceState::kStart);
  }
  return 0;
}
