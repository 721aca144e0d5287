#pragma once

#include <optional>
#include <string>

#include "commands/session.h"
#include "formats/igc/security_record.h"

namespace skyhaul {

struct SignatureResult {
  igc::SecurityCheck check = igc::SecurityCheck::kNoRecord;
  std::string manufacturer;  // three letters, whose key would be needed
  bool ours = false;         // only what this program signed can pass: each maker keeps its secret
};

// Checks the security record of an IGC file. Empty after a message when it cannot be read.
std::optional<SignatureResult> CheckSignature(const Session& session, const std::string& path);

}  // namespace skyhaul
