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
  return IsLetter(c) || static_cast<unsigned char>(c) >= 0x80;
}

}  // namespace

std::string TextFromField(std::string_view field) {
  std::string text;
  const std::string line = OneLine(field);
  const std::string_view rest = line;
  for (size_t i = 0; i < rest.size(); ++i) {
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
  const std::string bytes = ToWindows1252(FirstCharacters(OneLine(text), count));
  std::string field;
  for (size_t i = 0; i < bytes.size(); ++i) {
    const bool letter_follows = HasLetterAt(bytes, i + 1);
    if (bytes[i] == ',') {
      field += kCommaByte;
      if (letter_follows) field += ' ';
    } else {
      field += bytes[i] == kCommaByte && !letter_follows ? 'N' : bytes[i];
    }
  }
  return field;
}

uint32_t TimeFromSpreadsheetDay(double day) {
  const double time = std::round((day - SpreadsheetDay(0)) * kSecondsPerDay);
  const bool fits = time > 0 && time <= std::numeric_limits<uint32_t>::max();
  return fits ? static_cast<uint32_t>(time) : 0;
}

void AppendSpreadsheetDay(std::string& text, uint32_t time, uint32_t milliseconds) {
  constexpr double kHalfADecimal = 0.51e-7;  // and a little: rounding goes upwards, always
  const double day = SpreadsheetDay(time) + milliseconds / (kSecondsPerDay * 1000.0);
  AppendFixed(text, day + kHalfADecimal, 7);
}

}  // namespace skyhaul::ozi
