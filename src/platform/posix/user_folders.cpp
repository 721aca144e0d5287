#include "platform/posix/user_folders.h"

#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <string_view>

#include "platform/arguments.h"
#include "platform/file.h"

namespace skyhaul {

namespace {

constexpr std::string_view kDocumentsLine = "XDG_DOCUMENTS_DIR=\"";

// The rules for these variables say that a path that is not absolute counts as none.
std::string AbsoluteVariable(const char* name) {
  std::string value = EnvironmentVariable(name);
  return value.starts_with('/') ? value : "";
}

// The path between the quotes of the documents line, absolute or below $HOME, with quotes and
// backslashes escaped as in a shell:
//   XDG_DOCUMENTS_DIR="$HOME/Documents"
std::string PathOfLine(std::string_view line) {
  constexpr std::string_view kHome = "$HOME";
  std::string path;
  if (line.starts_with(kHome)) {
    path = HomeFolder();
    line.remove_prefix(kHome.size());
  }
  for (size_t i = 0; i < line.size() && line[i] != '"'; ++i) {
    if (line[i] == '\\' && i + 1 < line.size()) ++i;
    path += line[i];
  }
  return path;
}

std::string ConfiguredDocuments() {
  const std::string config = ConfigFolder();
  if (config.empty()) return {};
  std::string text;
  ReadWholeFile(config + "/user-dirs.dirs", text);
  std::string path;
  for (size_t start = 0; start < text.size();) {
    const size_t end = std::min(text.find('\n', start), text.size());
    const std::string_view line = std::string_view(text).substr(start, end - start);
    // Programs read the file as a shell would, so the last such line counts.
    if (line.starts_with(kDocumentsLine)) path = PathOfLine(line.substr(kDocumentsLine.size()));
    start = end + 1;
  }
  return path;
}

}  // namespace

std::string HomeFolder() {
  std::string home = AbsoluteVariable("HOME");
  if (!home.empty()) return home;
  // Services and cron jobs may run without the variable.
  const passwd* user = getpwuid(getuid());
  return user == nullptr || user->pw_dir == nullptr ? "" : user->pw_dir;
}

std::string TemporaryFolder() {
  const std::string folder = AbsoluteVariable("TMPDIR");
  return folder.empty() ? "/tmp" : folder;
}

std::string ConfigFolder() {
  std::string folder = AbsoluteVariable("XDG_CONFIG_HOME");
  if (!folder.empty()) return folder;
  const std::string home = HomeFolder();
  return home.empty() ? "" : home + "/.config";
}

std::vector<std::string> SystemConfigFolders() {
  const std::string list = EnvironmentVariable("XDG_CONFIG_DIRS");
  std::vector<std::string> folders;
  for (size_t start = 0; start < list.size();) {
    const size_t end = std::min(list.find(':', start), list.size());
    // Entries that are not absolute count as none, see above.
    if (list[start] == '/') folders.push_back(list.substr(start, end - start));
    start = end + 1;
  }
  if (folders.empty()) folders.emplace_back("/etc/xdg");
  return folders;
}

std::string DocumentsFolder() {
  std::string documents = ConfiguredDocuments();
  // The desktop's file outlives the folder that it names.
  if (documents.starts_with('/') && IsDirectory(documents)) return documents;
  const std::string home = HomeFolder();
  return home.empty() ? "." : home;
}

}  // namespace skyhaul
