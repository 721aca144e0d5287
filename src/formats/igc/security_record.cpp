#include "formats/igc/security_record.h"

#include <array>
#include <cstddef>

namespace skyhaul::igc {

namespace {

constexpr uint32_t kPolynomial = 0xedb88320;

// The remainder of each byte, so that the digest takes eight bits a step.
constexpr std::array<uint32_t, 256> RemainderTable() {
  std::array<uint32_t, 256> table{};
  for (uint32_t byte = 0; byte < table.size(); ++byte) {
    uint32_t remainder = byte;
    for (int bit = 0; bit < 8; ++bit) {
      remainder = (remainder >> 1) ^ ((remainder & 1) != 0 ? kPolynomial : 0);
    }
    table[byte] = remainder;
  }
  return table;
}

constexpr std::array<uint32_t, 256> kRemainders = RemainderTable();

// Mixed into the digest so that the plain check value of the text is not its record. Everyone who
// has the program has the secret, and 32 bits can be searched: the record protects against
// accidental change (a transfer that lost a line, an editor that changed the line ends), not a
// proof of origin.
constexpr uint64_t kSecret = 0x9d1f6b3ac27e5408;

// Every step can be undone (a shift that is exclusive-ored in, a product with an odd number modulo
// 2^64), so two digests never give the same record. The multipliers are those of the well-known
// SplitMix64 finaliser.
constexpr uint64_t MixWithSecret(uint32_t digest) {
  uint64_t mixed = digest ^ kSecret;
  mixed = (mixed ^ (mixed >> 30)) * 0xbf58476d1ce4e5b9;
  mixed = (mixed ^ (mixed >> 27)) * 0x94d049bb133111eb;
  return mixed ^ (mixed >> 31);
}

// The offset of the first line that begins with 'G', or npos.
size_t FindSecurityRecord(std::string_view text) {
  if (text.starts_with('G')) return 0;
  // The first one: lines between two G records then fail, because only blank ones may follow it.
  const size_t line_end = text.find("\nG");
  return line_end == std::string_view::npos ? line_end : line_end + 1;
}

}  // namespace

void UpdateDigest(SecurityDigest& digest, std::string_view bytes) {
  uint32_t value = digest.value;
  for (const char byte : bytes) {
    // The reflected form takes the lowest bit first, hence the shift to the right.
    value = (value >> 8) ^ kRemainders[(value ^ static_cast<unsigned char>(byte)) & 0xff];
  }
  digest.value = value;
}

std::string SecurityRecord(const SecurityDigest& digest) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  const uint64_t mixed = MixWithSecret(digest.value);
  std::string record = "G";
  // The highest four bits first, as people write numbers.
  for (int shift = 60; shift >= 0; shift -= 4) record += kDigits[(mixed >> shift) & 0x0f];
  return record;
}

SecurityCheck CheckSecurityRecord(std::string_view text) {
  const size_t found = FindSecurityRecord(text);
  if (found == std::string_view::npos) return SecurityCheck::kNoRecord;
  SecurityDigest digest;
  UpdateDigest(digest, text.substr(0, found));
  // CR LF is part of the record, so that converted line ends are found even where they are the only
  // change.
  const std::string expected = SecurityRecord(digest) + "\r\n";
  const std::string_view tail = text.substr(found);
  // Editors add blank lines at the end; these say nothing about the flight.
  const bool blank_after = tail.find_first_not_of(" \r\n", expected.size()) == tail.npos;
  return tail.starts_with(expected) && blank_after ? SecurityCheck::kPassed
                                                   : SecurityCheck::kFailed;
}

const char* SecurityCheckText(SecurityCheck check) {
  switch (check) {
    case SecurityCheck::kPassed:
      return "Security check PASSED";
    case SecurityCheck::kFailed:
      return "Security check FAILED";
    case SecurityCheck::kNoRecord:
      break;
  }
  return "No security record";
}

}  // namespace skyhaul::igc
