#include "commands/check_signature.h"

#include "core/operation.h"
#include "formats/igc/header.h"
#include "platform/file.h"

namespace skyhaul {

std::optional<SignatureResult> CheckSignature(const Session& session, const std::string& path) {
  std::string text;
  const FileResult read = ReadWholeFile(path, text);
  if (read.problem != FileProblem::kNone) {
    ShowMessage(Operation{.shell = session.shell},
                "Error opening file\n" + path + ": " + read.reason, "Security check");
    return std::nullopt;
  }
  SignatureResult result;
  // No record and a failed one are results of the check, not failures of the command.
  result.check = igc::CheckSecurityRecord(text);
  result.manufacturer = igc::ReadHeader(text).manufacturer;
  // The code that this program signs with. Any other failed record may still be good.
  result.ours = result.manufacturer == "XSH";
  return result;
}

}  // namespace skyhaul
