#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace skyhaul::flytec_simulator {

// How the instrument itself makes and takes its sentences. It shares no code with the program's own
// drivers, so that a fault of theirs cannot hide in both.

// "$", the body, its checksum, CR LF.
std::string InstrumentSentence(const std::string& body);

// The part of a sentence between '$' and '*', or an empty text when the sentence is not sound. A
// request that ends in a comma may come without a checksum.
std::string_view SoundBody(std::string_view sentence);

// The number that so many digits at the start of a text make, or -1.
int LeadingNumber(std::string_view text, size_t digits);

// The number that a text of exactly so many digits is, or -1.
int WholeNumber(std::string_view text, size_t digits);

// All fields of a text, cut at each comma.
std::vector<std::string_view> CutFields(std::string_view text);

enum class PositionCheck { kSound, kMalformed, kImpossible };

// Looks at the four fields of a position, "DDMM.mmm", "N" or "S", "DDDMM.mmm", "E" or "W", from
// fields[first] on. Impossible are minutes above 59 and places off the earth.
PositionCheck CheckPosition(const std::vector<std::string_view>& fields, size_t first);

}  // namespace skyhaul::flytec_simulator
