#include "formats/text/charset.h"

#include <algorithm>
#include <cstdint>
#include <iterator>

namespace skyhaul {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr uint32_t kNoCharacter = 0xFFFFFFFF;

// Codes 0x80 to 0x9F; the others are those of Unicode. 0 marks the five that mean nothing.
constexpr uint16_t kWindows1252[32] = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178,
};

// The plain letters of U+00C0 to U+017F; '*' marks those that are in kSpelledOut.
constexpr uint32_t kFirstPlain = 0xC0;
constexpr std::string_view kPlain =
    "AAAAAA*CEEEEIIII"
    "DNOOOOOxOUUUUY**"
    "aaaaaa*ceeeeiiii"
    "dnooooo/ouuuuy*y"
    "AaAaAaCcCcCcCcDd"
    "DdEeEeEeEeEeGgGg"
    "GgGgHhHhIiIiIiIi"
    "Ii**JjKkkLlLlLlL"
    "lLlNnNnNn*NnOoOo"
    "Oo**RrRrRrSsSsSs"
    "SsTtTtTtUuUuUuUu"
    "UuUuWwYyYZzZzZzs";
static_assert(kPlain.size() == 0x180 - kFirstPlain);

struct SpelledOut {
  uint32_t code;
  std::string_view plain;
};

constexpr SpelledOut kSpelledOut[] = {
    {0xA0, " "},    {0xB4, "'"},     {0xB7, "."},    {0xC6, "AE"},    {0xDE, "TH"},  {0xDF, "ss"},
    {0xE6, "ae"},   {0xFE, "th"},    {0x132, "IJ"},  {0x133, "ij"},   {0x149, "'n"}, {0x152, "OE"},
    {0x153, "oe"},  {0x192, "f"},    {0x1E9E, "SS"}, {0x2010, "-"},   {0x2011, "-"}, {0x2012, "-"},
    {0x2013, "-"},  {0x2014, "-"},   {0x2018, "'"},  {0x2019, "'"},   {0x201A, "'"}, {0x201C, "\""},
    {0x201D, "\""}, {0x201E, "\""},  {0x2022, "."},  {0x2026, "..."}, {0x202F, " "}, {0x2039, "<"},
    {0x203A, ">"},  {0x20AC, "EUR"}, {0x2122, "TM"},
};

// Letters that stand in pairs, the capital first.
struct LetterPairs {
  uint32_t first;
  uint32_t last;
  char capital;
};

constexpr LetterPairs kLetterPairs[] = {
    {0x1A0, 0x1A1, 'O'},   {0x1AF, 0x1B0, 'U'},   {0x1CD, 0x1CE, 'A'},   {0x1CF, 0x1D0, 'I'},
    {0x1D1, 0x1D2, 'O'},   {0x1D3, 0x1DC, 'U'},   {0x1E6, 0x1E7, 'G'},   {0x218, 0x219, 'S'},
    {0x21A, 0x21B, 'T'},   {0x1EA0, 0x1EB7, 'A'}, {0x1EB8, 0x1EC7, 'E'}, {0x1EC8, 0x1ECB, 'I'},
    {0x1ECC, 0x1EE3, 'O'}, {0x1EE4, 0x1EF1, 'U'}, {0x1EF2, 0x1EF9, 'Y'},
};

unsigned ByteAt(std::string_view text, size_t at) {
  return static_cast<unsigned char>(text[at]);
}

// How many bytes a character takes, told by its first one; 0 when none can start so.
size_t LengthOf(unsigned first) {
  if (first < 0x80) return 1;
  if (first >= 0xC2 && first <= 0xDF) return 2;
  if (first >= 0xE0 && first <= 0xEF) return 3;
  return first >= 0xF0 && first <= 0xF4 ? 4 : 0;
}

// Takes one character off the front of a text that is not empty. A byte that belongs to no valid
// character, an overlong form or half of a surrogate pair among them, is taken alone and gives
// kNoCharacter.
uint32_t TakeCharacter(std::string_view& text) {
  constexpr uint32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
  const unsigned first = ByteAt(text, 0);
  const size_t length = LengthOf(first);
  uint32_t code = length < 2 ? first : first & (0x7FU >> length);
  bool good = length != 0 && length <= text.size();
  for (size_t i = 1; good && i < length; ++i) {
    good = (ByteAt(text, i) & 0xC0U) == 0x80;
    code = code << 6 | (ByteAt(text, i) & 0x3FU);
  }
  good = good && code >= kSmallest[length] && code <= 0x10FFFF && (code < 0xD800 || code > 0xDFFF);
  text.remove_prefix(good ? length : 1);
  return good ? code : kNoCharacter;
}

bool IsUtf8(std::string_view text) {
  while (!text.empty()) {
    if (TakeCharacter(text) == kNoCharacter) return false;
  }
  return true;
}

// Codes below 0x10000 only, which is what Windows-1252 reaches.
void AppendUtf8(std::string& text, uint32_t code) {
  if (code < 0x80) {
    text += static_cast<char>(code);
  } else if (code < 0x800) {
    text += static_cast<char>(0xC0 | code >> 6);
    text += static_cast<char>(0x80 | (code & 0x3F));
  } else {
    text += static_cast<char>(0xE0 | code >> 12);
    text += static_cast<char>(0x80 | (code >> 6 & 0x3F));
    text += static_cast<char>(0x80 | (code & 0x3F));
  }
}

void AppendPlain(std::string& plain, uint32_t code) {
  const auto spelled = std::ranges::lower_bound(kSpelledOut, code, {}, &SpelledOut::code);
  if (spelled != std::end(kSpelledOut) && spelled->code == code) {
    plain += spelled->plain;
    return;
  }
  if (code >= kFirstPlain && code < kFirstPlain + kPlain.size()) {
    plain += kPlain[code - kFirstPlain];
    return;
  }
  for (const LetterPairs& pairs : kLetterPairs) {
    if (code < pairs.first || code > pairs.last) continue;
    const bool capital = (code - pairs.first) % 2 == 0;
    plain += static_cast<char>(capital ? pairs.capital : pairs.capital - 'A' + 'a');
    return;
  }
  plain += '?';
}

bool IsLetter(char character) {
  return (character >= 'A' && character <= 'Z') || (character >= 'a' && character <= 'z');
}

// An accent in a character of its own, as some systems write them, is part of the letter before.
bool IsCombiningAccent(uint32_t code) {
  return code >= 0x300 && code <= 0x36F;
}

}  // namespace

std::string ToUtf8(std::string_view bytes) {
  std::string_view rest = bytes;
  if (rest.starts_with(kByteOrderMark)) rest.remove_prefix(kByteOrderMark.size());
  if (IsUtf8(rest)) return std::string(rest);
  std::string text;
  text.reserve(bytes.size() + bytes.size() / 8);
  for (const char character : bytes) {
    const uint32_t byte = static_cast<unsigned char>(character);
    const uint32_t code = byte >= 0x80 && byte <= 0x9F ? kWindows1252[byte - 0x80] : byte;
    AppendUtf8(text, code == 0 && byte != 0 ? uint32_t{'?'} : code);
  }
  return text;
}

std::string ToAscii(std::string_view utf8) {
  std::string plain;
  plain.reserve(utf8.size());
  bool after_letter = false;
  while (!utf8.empty()) {
    const uint32_t code = TakeCharacter(utf8);
    if (IsCombiningAccent(code) && after_letter) continue;
    if (code < 0x80) {
      plain += static_cast<char>(code);
    } else {
      AppendPlain(plain, code);
    }
    after_letter = IsLetter(plain.back());
  }
  return plain;
}

std::string FirstCharacters(std::string_view utf8, size_t count) {
  std::string_view rest = utf8;
  for (size_t i = 0; i < count && !rest.empty(); ++i) TakeCharacter(rest);
  return std::string(utf8.substr(0, utf8.size() - rest.size()));
}

}  // namespace skyhaul
