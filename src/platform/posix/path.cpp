#include "platform/path.h"

namespace skyhaul {

size_t NameStart(const std::string& path) {
  return path.rfind('/') + 1;  // npos + 1 is 0
}

std::string FolderOf(const std::string& path) {
  const size_t start = NameStart(path);
  return start == 0 ? "." : path.substr(0, start);
}

std::string AsFolder(const std::string& path) {
  return NameStart(path) < path.size() ? path + '/' : path;
}

}  // namespace skyhaul
