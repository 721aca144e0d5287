#include "core/text/charset.h"

#include <algorithm>
#include <cstdint>
#include <iterator>

#include "core/text/letter_case.h"
#include "core/text/utf8.h"

namespace skyhaul {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

// Unicode of the bytes 0x80 to 0x9F; 0 marks the five that are unused. Every other byte is its own
// code in Unicode.
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

void AppendPlain(std::string& plain, uint32_t code) {
  // kSpelledOut stands in the order of its codes, so that it can be halved.
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
    // Capitals of these blocks are at even distances from the first.
    const bool capital = (code - pairs.first) % 2 == 0;
    plain += static_cast<char>(capital ? pairs.capital : pairs.capital - 'A' + 'a');
    return;
  }
  plain += '?';
}

// An accent in a character of its own, as some systems write them, is part of the letter before.
bool IsCombiningAccent(uint32_t code) {
  return code >= 0x300 && code <= 0x36F;
}

// Unicode of a byte of Windows-1252; 0 for an unused one.
uint32_t CodeOfByte(unsigned char byte) {
  return byte >= 0x80 && byte <= 0x9F ? kWindows1252[byte - 0x80] : byte;
}

// The byte of Windows-1252 for a code of Unicode, or -1.
int ByteOfCode(uint32_t code) {
  // The five unused bytes must not be found for the code 0, which this line has taken already.
  if (code < 0x80 || (code >= 0xA0 && code <= 0xFF)) return static_cast<int>(code);
  const auto* const place = std::ranges::find(kWindows1252, code);
  if (place == std::end(kWindows1252)) return -1;
  return static_cast<int>(0x80 + (place - std::begin(kWindows1252)));
}

}  // namespace

std::string ToUtf8(std::string_view bytes) {
  std::string_view rest = bytes;
  if (rest.starts_with(kByteOrderMark)) rest.remove_prefix(kByteOrderMark.size());
  // Text in another character set is hardly ever valid UTF-8 by chance: a letter above 0x7F would
  // need the right ones after it.
  if (IsUtf8(rest)) return std::string(rest);
  std::string text;
  // Room for a few letters that take two bytes or three.
  text.reserve(bytes.size() + bytes.size() / 8);
  for (const char character : bytes) {
    const uint32_t code = CodeOfByte(static_cast<unsigned char>(character));
    // A zero byte is a character like any other; only the unused codes become '?'.
    AppendUtf8(text, code == 0 && character != '\0' ? uint32_t{'?'} : code);
  }
  return text;
}

std::string ToAscii(std::string_view utf8) {
  std::string plain;
  plain.reserve(utf8.size());
  bool after_letter = false;
  while (!utf8.empty()) {
    const uint32_t code = TakeCharacter(utf8);
    // "u" and a combining diaeresis: the letter has been written already.
    if (IsCombiningAccent(code) && after_letter) continue;
    if (code < 0x80) {
      plain += static_cast<char>(code);
    } else {
      AppendPlain(plain, code);
    }
    // An accent with no letter before it is kept as '?', since nothing is dropped.
    after_letter = IsLetter(plain.back());
  }
  return plain;
}

std::string ToWindows1252(std::string_view utf8) {
  std::string bytes;
  bytes.reserve(utf8.size());
  while (!utf8.empty()) {
    std::string_view rest = utf8;
    const int byte = ByteOfCode(TakeCharacter(rest));
    if (byte >= 0) {
      bytes += static_cast<char>(byte);
    } else {
      // One character at a time, so that its neighbours keep their accents.
      bytes += ToAscii(utf8.substr(0, utf8.size() - rest.size()));
    }
    utf8 = rest;
  }
  return bytes;
}

}  // namespace skyhaul
