#include "platform/posix/port_users.h"

#include <dirent.h>
#include <unistd.h>

#include <array>
#include <memory>
#include <string_view>

#include "core/text/digits.h"
#include "platform/posix/process.h"

namespace skyhaul {

namespace {

using Folder = std::unique_ptr<DIR, int (*)(DIR*)>;

constexpr int kMostFiles = 50000;  // open files that are looked at, about 100 ms
constexpr std::string_view kPseudoTerminals = "/dev/pts/";

struct Search {
  std::string_view device;
  bool is_pseudo = false;
  int left = kMostFiles;
};

std::string LinkAt(int folder, const char* name) {
  std::array<char, 256> target{};
  const ssize_t length = readlinkat(folder, name, target.data(), target.size());
  return length < 0 ? "" : std::string(target.data(), static_cast<size_t>(length));
}

// files is /proc/4711/fd, whose entries are links:
//   4 -> /dev/ttyUSB0
bool Uses(const std::string& files, Search& search) {
  const Folder entries(opendir(files.c_str()), closedir);
  if (entries == nullptr) return false;  // another user's program
  bool uses = false;
  while (const dirent* entry = readdir(entries.get())) {
    if (--search.left < 0) break;
    const std::string target = LinkAt(dirfd(entries.get()), entry->d_name);
    // The other end of this pseudo-terminal: its maker often keeps ours open too.
    if (search.is_pseudo && target.ends_with("/ptmx")) return false;
    uses = uses || target == search.device;
  }
  return uses;
}

}  // namespace

std::string OtherPortUsers(const std::string& proc_root, const std::string& device) {
  Search search{.device = device, .is_pseudo = device.starts_with(kPseudoTerminals)};
  std::string users;
  const Folder entries(opendir(proc_root.c_str()), closedir);
  if (entries == nullptr) return users;
  while (const dirent* entry = readdir(entries.get())) {
    const int process = ReadWholeNumber(entry->d_name);  // what is no number is no process
    if (process <= 0 || process == getpid()) continue;
    if (!Uses(proc_root + "/" + entry->d_name + "/fd", search)) continue;
    if (!users.empty()) users += ", ";
    users += ProcessText(proc_root, process);
  }
  return users;
}

}  // namespace skyhaul
