#include "protocols/sentence/checksum.h"

#include <charconv>

namespace skyhaul {

uint8_t SentenceChecksum(std::string_view bytes) {
  uint8_t checksum = 0;
  for (const char c : bytes) checksum = static_cast<uint8_t>(checksum ^ static_cast<uint8_t>(c));
  return checksum;
}

void AppendNmeaChecksum(std::string& sentence, size_t capacity) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  const std::string_view text = sentence;
  // The sum leaves out the '$'.
  const uint8_t checksum = SentenceChecksum(text.substr(text.empty() ? 0 : 1));
  const char suffix[] = {'*', kDigits[checksum >> 4], kDigits[checksum & 0x0f], '\r', '\n'};
  for (const char c : suffix) {
    // One place stays free, as for the NUL of a text that is sent from a buffer of this size.
    if (sentence.size() + 1 >= capacity) return;
    sentence += c;
  }
}

bool ContradictsChecksum(std::string_view sentence) {
  // $PBRTL,*74
  const size_t star = sentence.size() < 4 ? 0 : sentence.size() - 3;
  if (star == 0 || sentence[star] != '*') return false;
  unsigned written = 0;
  const char* const end = sentence.data() + sentence.size();
  const auto [at, error] = std::from_chars(end - 2, end, written, 16);
  if (error != std::errc() || at != end) return true;
  return written != SentenceChecksum(sentence.substr(1, star - 1));
}

int UpperHexValue(uint8_t digit) {
  if (digit >= '0' && digit <= '9') return digit - '0';
  if (digit >= 'A' && digit <= 'F') return digit - 'A' + 10;
  return -1;
}

}  // namespace skyhaul
