#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace skyhaul {

inline constexpr size_t kSentenceCapacity = 80;  // an outgoing sentence, its NUL included

// XOR of all bytes.
uint8_t SentenceChecksum(std::string_view bytes);

// Appends '*', the checksum of everything after the first character in two upper-case hexadecimal
// digits, CR and LF, as far as they fit: a sentence holds at most capacity - 1 characters.
void AppendNmeaChecksum(std::string& sentence, size_t capacity = kSentenceCapacity + 5);

// True when a sentence, from '$' on and without its line end, closes with '*' and two hexadecimal
// digits (of either case) that are not its checksum. A sentence without them says nothing.
bool ContradictsChecksum(std::string_view sentence);

// The value of an upper-case hexadecimal digit, or -1. Lower case is refused: a checksum never uses
// it.
int UpperHexValue(uint8_t digit);

}  // namespace skyhaul
