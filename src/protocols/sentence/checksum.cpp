#include "protocols/sentence/checksum.h"

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

int UpperHexValue(uint8_t digit) {
  if (digit >= '0' && digit <= '9') return digit - '0';
  if (digit >= 'A' && digit <= 'F') return digit - 'A' + 10;
  return -1;
}

}  // namespace skyhaul
