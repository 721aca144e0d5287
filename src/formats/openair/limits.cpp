#include "formats/openair/limits.h"

#include <optional>

#include "core/text/letter_case.h"
#include "core/text/scan.h"
#include "formats/openair/fields.h"

namespace skyhaul::openair {

namespace {

enum class Meaning { kFeet, kMetres, kSea, kAboveGround, kGround, kFlightLevel, kUnlimited };

struct Word {
  std::string_view text;
  Meaning meaning;
};

// A word that begins with another stands before it: "2500FTAGL" is read from the left.
constexpr Word kWords[] = {
    {"FL", Meaning::kFlightLevel},   {"FEET", Meaning::kFeet},
    {"FT", Meaning::kFeet},          {"F", Meaning::kFeet},
    {"'", Meaning::kFeet},           {"METERS", Meaning::kMetres},
    {"METRES", Meaning::kMetres},    {"MSL", Meaning::kSea},
    {"M", Meaning::kMetres},         {"AMSL", Meaning::kSea},
    {"ASL", Meaning::kSea},          {"ALT", Meaning::kSea},
    {"AGL", Meaning::kAboveGround},  {"AGND", Meaning::kAboveGround},
    {"ASFC", Meaning::kAboveGround}, {"GROUND", Meaning::kGround},
    {"GND", Meaning::kGround},       {"SURFACE", Meaning::kGround},
    {"SFC", Meaning::kGround},       {"UNLIMITED", Meaning::kUnlimited},
    {"UNLIM", Meaning::kUnlimited},  {"UNLTD", Meaning::kUnlimited},
    {"UNL", Meaning::kUnlimited},
};

// What the words of a limit say, each at most once.
struct Parts {
  std::optional<double> number;
  std::optional<LimitUnit> unit;
  std::optional<Meaning> reference;
};

std::optional<Meaning> TakeWord(std::string_view& rest) {
  for (const Word& word : kWords) {
    if (!rest.starts_with(word.text)) continue;
    rest.remove_prefix(word.text.size());
    return word.meaning;
  }
  return std::nullopt;
}

// Below the sea, as on a polder, an altitude is negative.
bool TakeNumberPart(std::string_view& rest, Parts& parts) {
  constexpr double kHighest = 1e6;  // above any airspace in any unit
  const bool negative = rest.front() == '-';
  if (negative) rest.remove_prefix(1);
  double number = 0;
  // Two numbers, "2500 ft 760 m", would leave open which of them counts.
  if (parts.number || !TakeNumber(rest, number) || number > kHighest) return false;
  parts.number = negative ? -number : number;
  return true;
}

// "FL65", "2500ft AGL", "1000 M MSL": parts in any order, but for a unit, which follows its number.
bool TakePart(std::string_view& rest, Parts& parts) {
  const std::optional<Meaning> meaning = TakeWord(rest);
  if (!meaning) return TakeNumberPart(rest, parts);
  if (*meaning == Meaning::kFeet || *meaning == Meaning::kMetres) {
    // A second unit, or one before its number, is part of a word that this does not know.
    if (parts.unit || !parts.number) return false;
    parts.unit = *meaning == Meaning::kFeet ? LimitUnit::kFeet : LimitUnit::kMetres;
    return true;
  }
  if (parts.reference) return false;
  parts.reference = *meaning;
  return true;
}

bool TakeParts(std::string_view text, Parts& parts) {
  // "4500 ft (1370 m)": brackets repeat the limit in another unit or explain it.
  const std::string capitals = UpperCase(text.substr(0, text.find('(')));
  std::string_view rest = TrimBlanks(capitals);
  while (!rest.empty()) {
    if (!TakePart(rest, parts)) return false;
    SkipBlanks(rest);
  }
  return true;
}

// kNotGiven when the parts do not go together.
LimitReference ReferenceOf(const Parts& parts) {
  const bool number = parts.number.has_value();
  // A limit without a reference is above the sea: "4500".
  switch (parts.reference.value_or(Meaning::kSea)) {
    case Meaning::kAboveGround:
      return number ? LimitReference::kGround : LimitReference::kNotGiven;
    case Meaning::kGround:
      // "GND" alone is the surface, "1000 ft GND" a height above it.
      return number ? LimitReference::kGround : LimitReference::kSurface;
    case Meaning::kFlightLevel:
      // A flight level counts hundreds of feet already: with a unit behind it nobody knows what was
      // meant.
      return number && !parts.unit ? LimitReference::kFlightLevel : LimitReference::kNotGiven;
    case Meaning::kUnlimited:
      return number ? LimitReference::kNotGiven : LimitReference::kUnlimited;
    default:
      return number ? LimitReference::kSea : LimitReference::kNotGiven;
  }
}

std::string Altitude(const AirspaceLimit& limit, std::string_view reference) {
  std::string text;
  AppendScaled(text, limit.value, 1);
  text += limit.unit == LimitUnit::kFeet ? "ft " : "m ";
  return text.append(reference);
}

}  // namespace

int ParseLimit(std::string_view text, AirspaceLimit& limit) {
  // The text is set first, because it is all that remains of a limit that is not understood.
  limit = {.text = PlainText(text)};
  Parts parts;
  if (!TakeParts(limit.text, parts)) return -1;
  limit.reference = ReferenceOf(parts);
  if (limit.reference == LimitReference::kNotGiven) return -1;
  // Feet are the custom for numbers without a unit.
  limit.unit = parts.unit.value_or(LimitUnit::kFeet);
  limit.value = parts.number.value_or(0);
  return 0;
}

std::string LimitText(const AirspaceLimit& limit) {
  // The file's own words win: composed ones would change a file that was only copied.
  std::string text = PlainText(limit.text);
  if (!text.empty()) return text;
  switch (limit.reference) {
    case LimitReference::kNotGiven:
      return text;
    case LimitReference::kGround:
      return Altitude(limit, "AGL");
    case LimitReference::kSea:
      return Altitude(limit, "MSL");
    case LimitReference::kFlightLevel:
      text = "FL";
      AppendScaled(text, limit.value, 1);
      return text;
    case LimitReference::kSurface:
      return "GND";
    case LimitReference::kUnlimited:
      return "UNLIM";
  }
  return text;
}

}  // namespace skyhaul::openair
