#include "platform/posix/leftovers.h"

#include <dirent.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <memory>

#include "platform/posix/process.h"
#include "platform/temporary_name.h"

namespace skyhaul {

namespace {

// Nobody changes a file in the making for that long, so an old one whose process number somebody
// else has now is only kept, never the other way round.
bool IsLeftover(int folder, const char* name, time_t now) {
  const uint32_t maker = MakerOfTemporary(name);
  if (maker == 0 || ProcessLives(static_cast<pid_t>(maker))) return false;
  struct stat status {};
  if (fstatat(folder, name, &status, AT_SYMLINK_NOFOLLOW) != 0) return false;
  return S_ISREG(status.st_mode) && status.st_uid == geteuid() &&
         now - status.st_mtime >= kLeftoverAge_s;
}

}  // namespace

void RemoveLeftovers(const std::string& folder, int new_file) {
  struct stat status {};
  if (fstat(new_file, &status) != 0) return;
  const std::unique_ptr<DIR, int (*)(DIR*)> entries(opendir(folder.c_str()), closedir);
  if (entries == nullptr) return;
  while (const dirent* entry = readdir(entries.get())) {
    const int fd = dirfd(entries.get());
    if (IsLeftover(fd, entry->d_name, status.st_mtime)) unlinkat(fd, entry->d_name, 0);
  }
}

}  // namespace skyhaul
