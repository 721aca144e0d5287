#pragma once

#include <optional>
#include <string>

#include "commands/session.h"
#include "files/formats.h"

namespace skyhaul {

struct ConvertFileRequest {
  std::string from;
  std::string to;
  std::string keyword;  // the format to write; empty: the one of the extension of `to`
  bool overwrite = false;
  std::optional<FileKind> only;  // a file of another kind is refused; empty: any
  bool strict = false;           // a damaged flight is refused, not repaired
};

struct ConvertFileResult {
  bool done = false;   // all of the file was written
  size_t records = 0;  // fixes, waypoints or airspaces written; may be some when it is not done
};

// Reads a file and writes it in another format, without touching the document. A file is never
// converted onto itself, and damaged airspaces are left out. Failures have been said.
ConvertFileResult ConvertFile(const Session& session, const ConvertFileRequest& request);

}  // namespace skyhaul
