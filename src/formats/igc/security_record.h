#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace skyhaul::igc {

// The running digest over the lines of an IGC file: a table-driven 32-bit cyclic redundancy check
// (reflected polynomial 0xEDB88320, as in IEEE 802.3), seeded with all ones. docs/igc.md says what
// it protects against and what not.
struct SecurityDigest {
  uint32_t value = 0xffffffff;
};

// Feeds bytes as they stand in the file, line ends included. Lines may be fed in pieces of any
// size.
void UpdateDigest(SecurityDigest& digest, std::string_view bytes);

// The G record for a digest, without a line end: "G" and sixteen upper-case hexadecimal digits.
std::string SecurityRecord(const SecurityDigest& digest);

enum class SecurityCheck { kPassed, kFailed, kNoRecord };

// Checks a whole file's text: the digest over every byte of the lines before the first G record,
// which must end with CR LF and be the last line that is not blank. A G record of any other form
// fails.
SecurityCheck CheckSecurityRecord(std::string_view text);

// "Security check PASSED", "Security check FAILED" or "No security record".
const char* SecurityCheckText(SecurityCheck check);

}  // namespace skyhaul::igc
