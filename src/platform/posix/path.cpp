#include "platform/path.h"

#include <algorithm>

namespace skyhaul {

// Counts the bytes that begin a character of UTF-8; the others are 10xxxxxx.
size_t PathLength(const std::string& path) {
  return static_cast<size_t>(std::count_if(path.begin(), path.end(), [](char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U;
  }));
}

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
