#include "formats/openair/fields.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <system_error>

#include "core/text/digits.h"
#include "core/text/letter_case.h"
#include "core/text/printable.h"
#include "core/text/scan.h"
#include "core/units.h"

namespace skyhaul::openair {

namespace {

bool TakeCharacter(std::string_view& rest, char character) {
  if (rest.empty() || UpperLetter(rest.front()) != character) return false;
  rest.remove_prefix(1);
  return true;
}

// "47:30:15", "47:30.25" or "47.5042".
bool TakeDegrees(std::string_view& rest, double& degrees) {
  degrees = 0;
  double parts_per_degree = 1;
  for (int i = 0; i < 3; ++i) {
    double number = 0;
    // Sixty itself passes: programs that round each part by itself write "47:29:60".
    if (!TakeNumber(rest, number) || (i > 0 && number > 60)) return false;
    degrees += number / parts_per_degree;
    parts_per_degree *= 60;
    SkipBlanks(rest);
    // No third colon is asked for, so that what follows the seconds can be the hemisphere only.
    if (i == 2 || !TakeCharacter(rest, ':')) return true;
    // A fraction belongs to the last part: "47:30.5:15" has two meanings and is refused.
    if (number != std::floor(number)) return false;
  }
  return true;
}

// "47:30:15 N" or "47:30:15N": degrees and one of two letters.
bool TakeCoordinate(std::string_view& rest, std::string_view letters, double limit_deg,
                    int32_t& semicircles) {
  double degrees = 0;
  if (!TakeDegrees(rest, degrees) || degrees > limit_deg) return false;
  // The letter is not optional: airspaces lie on both sides of Greenwich, and one without its
  // letter would be drawn in the wrong country.
  const bool negative = TakeCharacter(rest, letters[1]);
  if (!negative && !TakeCharacter(rest, letters[0])) return false;
  semicircles = DegreesToSemicircles(negative ? -degrees : degrees);
  return true;
}

struct Decimals {
  uint64_t parts_per_second = 1;
  size_t count = 0;
  uint64_t angle = 0;  // in those parts
};

// Seconds suffice for most that came from a file; four decimals are finer than a semicircle.
Decimals FewestDecimals(double magnitude_semicircles) {
  constexpr double kSafelyTheSame = 0.49;  // of a semicircle, so that rounding cannot tip over
  Decimals decimals;
  for (;;) {
    const double parts_per_semicircle =
        3600.0 * static_cast<double>(decimals.parts_per_second) * kDegreesPerSemicircle;
    const double angle = std::round(magnitude_semicircles * parts_per_semicircle);
    decimals.angle = static_cast<uint64_t>(angle);
    const double error = angle / parts_per_semicircle - magnitude_semicircles;
    if (decimals.count == 4 || std::abs(error) < kSafelyTheSame) return decimals;
    decimals.parts_per_second *= 10;
    ++decimals.count;
  }
}

// "47:30:15.25 N". The angle is rounded as a whole and then split, so that no part can become 60.
void AppendCoordinate(std::string& text, int32_t semicircles, size_t degree_digits,
                      std::string_view letters) {
  const Decimals decimals = FewestDecimals(std::abs(static_cast<double>(semicircles)));
  const uint64_t seconds = decimals.angle / decimals.parts_per_second;
  AppendPadded(text, seconds / 3600, degree_digits);
  text += ':';
  AppendPadded(text, seconds / 60 % 60, 2);
  text += ':';
  AppendPadded(text, seconds % 60, 2);
  if (decimals.count > 0) {
    text += '.';
    AppendPadded(text, decimals.angle % decimals.parts_per_second, decimals.count);
  }
  text += ' ';
  text += letters[semicircles < 0 ? 1 : 0];
}

bool TakeCode(std::string_view& rest, std::string_view code, bool any_case) {
  const std::string_view word = rest.substr(0, code.size());
  if (word != code && !(any_case && EqualIgnoringCase(word, code))) return false;
  rest.remove_prefix(code.size());
  return true;
}

// Whether a text begins with "DC 5", "DA 10,", "V D=", "V X=" or "DP 47:30 N 008:15 E".
bool BeginsRecord(std::string_view text, bool any_case) {
  double ignored = 0;
  if (TakeCode(text, "DC", any_case)) return TakeNumber(text, ignored);
  if (TakeCode(text, "DA", any_case)) {
    if (!TakeNumber(text, ignored)) return false;
    SkipBlanks(text);
    // "DA 12" alone is a name as danger areas have them.
    return text.starts_with(',');
  }
  AirspacePosition position;
  for (const std::string_view code : {"DP", "DB", "DY"}) {
    if (TakeCode(text, code, any_case)) return TakePosition(text, position);
  }
  if (!TakeCode(text, "V", any_case)) return false;
  SkipBlanks(text);
  if (!TakeCharacter(text, 'X') && !TakeCharacter(text, 'D')) return false;
  SkipBlanks(text);
  return text.starts_with('=');
}

}  // namespace

// "DA 10,270,290" and "DA 10, 270, 290" are both common.
void SkipSeparator(std::string_view& rest) {
  SkipBlanks(rest);
  TakeCharacter(rest, ',');
  SkipBlanks(rest);
}

std::string PlainText(std::string_view text) {
  std::string plain(text);
  // A star would begin a comment, and the rest of the name would be gone when the file is read
  // again.
  std::replace(plain.begin(), plain.end(), '*', ' ');
  return OneLine(plain);
}

bool TakeNumber(std::string_view& rest, double& number) {
  SkipBlanks(rest);
  // Kept to digits because from_chars takes a sign and "inf" as well.
  if (rest.empty() || (!IsDigit(rest.front()) && rest.front() != '.')) return false;
  // Without exponents, lest the E of a longitude be taken for one.
  const auto result =
      std::from_chars(rest.data(), rest.data() + rest.size(), number, std::chars_format::fixed);
  if (result.ec != std::errc()) return false;
  rest.remove_prefix(static_cast<size_t>(result.ptr - rest.data()));
  return true;
}

bool TakePosition(std::string_view& rest, AirspacePosition& position) {
  // "47:30:15 N 008:15:30 E", or with a comma between the two.
  if (!TakeCoordinate(rest, "NS", 90, position.lat)) return false;
  SkipSeparator(rest);
  return TakeCoordinate(rest, "EW", 180, position.lon);
}

bool HasRecord(std::string_view text) {
  char before = ' ';
  for (; !text.empty(); text.remove_prefix(1)) {
    // In the middle of a word only capitals are a code: "cornerDC 5", but not "Lady 5".
    if (BeginsRecord(text, !IsLetter(before) && !IsDigit(before))) return true;
    before = text.front();
  }
  return false;
}

bool HasOutline(std::string_view text) {
  if (HasRecord(text)) return true;
  char before = ' ';
  for (; !text.empty(); text.remove_prefix(1)) {
    std::string_view rest = text;
    AirspacePosition ignored;
    if (IsDigit(text.front()) && !IsDigit(before) && TakePosition(rest, ignored)) return true;
    before = text.front();
  }
  return false;
}

bool IsMarked(std::string_view text) {
  constexpr std::string_view kMarks = ";#/(\"";
  SkipBlanks(text);
  return text.empty() || kMarks.find(text.front()) != kMarks.npos;
}

bool IsMarkedComment(std::string_view rest) {
  return IsMarked(rest) && !HasOutline(rest);
}

bool IsComment(std::string_view rest) {
  if (HasOutline(rest)) return false;
  if (IsMarked(rest)) return true;
  // "E, 47:20:00 N" and "E .5" go on with numbers; "E - corner" and "E," do not.
  const size_t first = rest.find_first_not_of(" \t,.:+-'");
  return first == rest.npos || !IsDigit(rest[first]);
}

void AppendScaled(std::string& text, double value, double scale) {
  char digits[350];  // the largest double has 309 digits before the point
  const double finite = std::isfinite(value) ? value : 0;
  // Adding zero makes a negative zero a plain one.
  const double number = finite / scale + 0.0;
  std::to_chars_result end = {};
  for (int decimals = 0; decimals <= 9; ++decimals) {
    end = std::to_chars(digits, digits + sizeof digits, number, std::chars_format::fixed, decimals);
    // Compared in the unit of the record: 5 nautical miles are 9260 m, and "5" must give exactly
    // these.
    double again = 0;
    std::from_chars(digits, end.ptr, again);
    if (again * scale == finite) break;
  }
  text.append(digits, end.ptr);
}

void AppendPosition(std::string& text, AirspacePosition position) {
  AppendCoordinate(text, position.lat, 2, "NS");
  text += ' ';
  AppendCoordinate(text, position.lon, 3, "EW");
}

}  // namespace skyhaul::openair
