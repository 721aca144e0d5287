#include "formats/ozi/ozi_text.h"

#include <cmath>
#include <limits>

#include "core/text/charset.h"
#include "core/text/letter_case.h"
#include "core/text/numbers.h"
#include "core/text/printable.h"
#include "core/text/utf8.h"
#include "core/time_scale.h"

namespace skyhaul::ozi {

namespace {

constexpr std::string_view kEnye = "\xC3\x91";  // "Ñ"
constexpr char kCommaByte = '\xD1';

// Whether a letter stands at a place: ASCII, or the first byte of any other.
bool HasLetterAt(std::string_view text, size_t place) {
  if (place >= text.size()) return false;
  const char c = text[place];
  // Accented letters may lie beyond ASCII; other signs there are rare in names.
  return IsLetter(c) || static_cast<unsigned char>(c) >= 0x80;
}

}  // namespace

std::string TextFromField(std::string_view field) {
  std::string text;
  const std::string line = OneLine(field);
  const std::string_view rest = line;
  for (size_t i = 0; i < rest.size(); ++i) {
    // "BernÑ Bundesplatz" is "Bern, Bundesplatz", but "ESPAÑA" is a word.
    if (rest.substr(i).starts_with(kEnye) && !HasLetterAt(rest, i + kEnye.size())) {
      text += ',';
      i += kEnye.size() - 1;
    } else {
      text += rest[i];
    }
  }
  return text;
}

std::string TextToField(std::string_view text, size_t count) {
  // Cut by characters before the conversion; blanks added after commas do not count.
  const std::string bytes = ToWindows1252(FirstCharacters(OneLine(text), count));
  std::string field;
  for (size_t i = 0; i < bytes.size(); ++i) {
    const bool letter_follows = HasLetterAt(bytes, i + 1);
    if (bytes[i] == ',') {
      field += kCommaByte;
      // "Bern,Bundesplatz": without the blank the sign would be read as the letter.
      if (letter_follows) field += ' ';
    } else {
      // A last "Ñ" would be read as a comma.
      field += bytes[i] == kCommaByte && !letter_follows ? 'N' : bytes[i];
    }
  }
  return field;
}

uint32_t TimeFromSpreadsheetDay(double day) {
  // The day has 7 decimals, 8.6 ms; whole seconds are what the record holds.
  const double time = std::round((day - SpreadsheetDay(0)) * kSecondsPerDay);
  // An empty or zero day stands for no time and lies before the scale.
  const bool fits = time > 0 && time <= std::numeric_limits<uint32_t>::max();
  return fits ? static_cast<uint32_t>(time) : 0;
}

void AppendSpreadsheetDay(std::string& text, uint32_t time, uint32_t milliseconds) {
  constexpr double kHalfADecimal = 0.51e-7;  // and a little: rounding goes upwards, always
  const double day = SpreadsheetDay(time) + milliseconds / (kSecondsPerDay * 1000.0);
  AppendFixed(text, day + kHalfADecimal, 7);
}

}  // namespace skyhaul::ozi
