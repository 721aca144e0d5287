#include "app/command_line/characters.h"

namespace skyhaul {

bool StartsCharacter(char byte) {
  // 10xxxxxx continues a character of UTF-8; every other byte starts one.
  return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U;
}

void AppendWithin(char byte, size_t max_characters, size_t& seen, std::string& text) {
  if (StartsCharacter(byte)) ++seen;
  // The second bound is for texts that are not UTF-8, where bytes that continue nothing would never
  // be counted.
  if (seen <= max_characters && text.size() < max_characters * kMaxBytesPerCharacter) text += byte;
}

std::string CutToCharacters(std::string_view text, size_t max_characters) {
  std::string cut;
  size_t seen = 0;
  for (const char byte : text) AppendWithin(byte, max_characters, seen, cut);
  return cut;
}

}  // namespace skyhaul
