#include "platform/path.h"

#include "platform/win32/wide_text.h"

namespace skyhaul {

size_t PathLength(const std::string& path) {
  return WideText(path).size();
}

// Both slashes separate, and so does a drive's colon: "C:flight.igc" lies in the folder that is
// current on drive C. A colon further on is no separator: it is part of a stream's name.
size_t NameStart(const std::string& path) {
  const size_t slash = path.find_last_of("\\/");
  if (slash != std::string::npos) return slash + 1;
  return path.size() >= 2 && path[1] == ':' ? 2 : 0;
}

std::string FolderOf(const std::string& path) {
  const size_t start = NameStart(path);
  return start == 0 ? "." : path.substr(0, start);
}

std::string AsFolder(const std::string& path) {
  // A drive's colon ends a folder too: "C:" with a backslash would be another folder.
  return NameStart(path) < path.size() ? path + '\\' : path;
}

}  // namespace skyhaul
