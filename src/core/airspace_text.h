#pragma once

#include <cstddef>
#include <string>

#include "core/airspace.h"

namespace skyhaul {

// "D", or "D CTR" where newer files tell the class of the rules and the type of the airspace apart;
// older ones have one word for both.
std::string ClassAndType(const CtrRecord& airspace);

// Class and limits of an airspace in at most so many characters of ASCII, as a pilot reads them on
// a small screen: "C GND-FL65", "D 1000ftAGL-FL95", "R 300mAGL-UNL". Numbers without a unit are
// feet; "G" at their end means above ground, as "AGL" does where there is room for it. What does
// not fit otherwise is cut from class and type. A limit that is not known is "?"; without both
// there is the class alone, so the text is empty when nothing is known.
std::string ClassAndLimits(const CtrRecord& airspace, size_t width);

}  // namespace skyhaul
