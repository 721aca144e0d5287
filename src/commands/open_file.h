#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "commands/session.h"
#include "files/formats.h"
#include "report/file_summary.h"

namespace skyhaul {

struct OpenFileRequest {
  std::string path;
  std::optional<FileKind> only;  // a file of another kind is refused; empty: any
  bool strict = false;           // a damaged flight is refused, not repaired
};

struct OpenFileResult {
  bool done = false;
  FileSummary summary;
  uint32_t generation = 0;  // of the list that the file has become
};

// Reads a file of any format into the document's list of its kind. A file that cannot be read
// leaves the document as it is, after a message.
OpenFileResult OpenFile(Session& session, const OpenFileRequest& request);

// Sums a file up without touching the document. Empty after a message when it cannot be read;
// strict as in OpenFileRequest.
std::optional<FileSummary> SummariseFile(const Session& session, const std::string& path,
                                         bool strict = false);

}  // namespace skyhaul
