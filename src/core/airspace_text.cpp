#include "core/airspace_text.h"

#include <string_view>

#include "core/text/charset.h"
#include "core/text/numbers.h"

namespace skyhaul {

namespace {

// What follows the number of a limit. The second text is for heights above ground.
struct LimitStyle {
  std::string_view feet[2];
  std::string_view metres[2];
};
// The longest that fits is taken.
constexpr LimitStyle kStyles[] = {
    {.feet = {"ft", "ftAGL"}, .metres = {"m", "mAGL"}},
    {.feet = {"ft", "ftG"}, .metres = {"m", "mG"}},
    {.feet = {"", "G"}, .metres = {"m", "mG"}},
};

std::string ShortLimit(const AirspaceLimit& limit, const LimitStyle& style) {
  switch (limit.reference) {
    case LimitReference::kGround:
    case LimitReference::kSea: {
      const size_t ground = limit.reference == LimitReference::kGround ? 1 : 0;
      const auto& units = limit.unit == LimitUnit::kFeet ? style.feet : style.metres;
      return FixedText(limit.value, 0).append(units[ground]);
    }
    case LimitReference::kFlightLevel:
      return "FL" + FixedText(limit.value, 0);
    case LimitReference::kSurface:
      return "GND";
    case LimitReference::kUnlimited:
      return "UNL";
    case LimitReference::kNotGiven:
      break;
  }
  // A text that nobody understood would be cut to another meaning here.
  return "?";
}

bool IsKnown(const AirspaceLimit& limit) {
  return limit.reference != LimitReference::kNotGiven;
}

}  // namespace

std::string ClassAndType(const CtrRecord& airspace) {
  if (airspace.type.empty() || airspace.type == "NONE") return airspace.airspace_class;
  return airspace.airspace_class + ' ' + airspace.type;
}

std::string ClassAndLimits(const CtrRecord& airspace, size_t width) {
  const std::string name = ToAscii(ClassAndType(airspace));
  if (!IsKnown(airspace.floor) && !IsKnown(airspace.ceiling)) return name.substr(0, width);
  const std::string start = name.empty() ? "" : name + ' ';
  std::string limits;
  for (const LimitStyle& style : kStyles) {
    limits = ShortLimit(airspace.floor, style) + '-' + ShortLimit(airspace.ceiling, style);
    if (start.size() + limits.size() <= width) return start + limits;
  }
  // A limit that lost a digit would be another one: then it is better not there at all.
  if (limits.size() > width) return name.substr(0, width);
  // "RESTRICTED GND-FL195" becomes "RESTRICT GND-FL195" where 18 characters are allowed.
  const size_t room = width - limits.size();
  return room < 2 ? limits : name.substr(0, room - 1) + ' ' + limits;
}

}  // namespace skyhaul
