#include "platform/posix/lock_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <map>
#include <memory>
#include <mutex>
#include <string_view>

#include "core/text/digits.h"
#include "platform/posix/descriptor.h"
#include "platform/posix/new_file.h"
#include "platform/posix/process.h"

namespace skyhaul {

namespace {

constexpr const char* kProcRoot = "/proc";
constexpr int64_t kWritten_s =
    10;  // a lock file without a number is still being written until then
constexpr int kAttempts = 3;

// The locks that this process has made, by the port's descriptor. Any thread may open a port.
struct OwnLocks {
  std::mutex mutex;
  std::map<int, std::string> paths;
};

OwnLocks& Own() {
  static OwnLocks own;
  return own;
}

bool IsOwn(const std::string& lock) {
  const std::scoped_lock guard(Own().mutex);
  return std::ranges::any_of(Own().paths, [&](const auto& own) { return own.second == lock; });
}

// What a lock file says.
struct Lock {
  bool exists = false;
  bool readable = false;
  ino_t file = 0;
  time_t written = 0;
  pid_t process = 0;  // 0: none that can be understood
};

// "      4711\n", and "      4711 minicom root\n" of some programs; or four bytes in the machine's
// order. Four digits are a text: as bytes they would be beyond every process number.
pid_t ReadProcess(std::string_view text) {
  int32_t number = 0;
  if (text.size() == sizeof(number) && !std::all_of(text.begin(), text.end(), [](char c) {
        return IsDigit(c) || c == ' ' || c == '\n';
      })) {
    std::memcpy(&number, text.data(), sizeof(number));
  } else {
    text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
    number = ReadWholeNumber(text.substr(0, text.find_first_not_of("0123456789")));
  }
  return number > 0 && number <= kMaxProcess ? number : 0;
}

Lock ReadLock(const std::string& path) {
  Lock lock;
  struct stat status {};
  if (lstat(path.c_str(), &status) != 0) return lock;
  lock.exists = true;
  // O_NOFOLLOW and O_NONBLOCK: anybody can put a link or a pipe into that folder.
  const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
  if (file.fd < 0 || fstat(file.fd, &status) != 0 || !S_ISREG(status.st_mode)) return lock;
  char text[64] = {};
  const ssize_t size = read(file.fd, text, sizeof text);
  if (size < 0) return lock;
  lock.readable = true;
  lock.file = status.st_ino;
  lock.written = status.st_mtime;
  lock.process = ReadProcess({text, static_cast<size_t>(size)});
  return lock;
}

std::string Holder(const Lock& lock, const std::string& path) {
  if (!lock.exists) return {};
  const std::string by = ", by the lock file " + path;
  if (!lock.readable) return "one that cannot be told" + by;
  if (lock.process == 0) {
    const time_t now = time(nullptr);
    // A file from the future, as a clock that was set leaves it, is no sign of somebody at work.
    const bool just_written = lock.written <= now && now - lock.written < kWritten_s;
    return just_written ? "one that is just opening it" + by : "";
  }
  // In a container each start of a program may get the number of the one before.
  const bool holds = lock.process == getpid() ? IsOwn(path) : ProcessLives(lock.process);
  return holds ? ProcessText(kProcRoot, lock.process) + by : "";
}

// Only the file that was read: another program may have put its own in the place meanwhile. In a
// folder with the sticky bit it stays unless its owner removes it.
void RemoveStale(const std::string& path, const Lock& stale) {
  struct stat status {};
  if (lstat(path.c_str(), &status) == 0 && status.st_ino == stale.file) unlink(path.c_str());
}

// The file is whole before it has the name that others look at, and a link is refused where there
// is one already. Returns 0 or an errno value.
int MakeLock(const std::string& path) {
  char text[16];
  std::snprintf(text, sizeof text, "%10d\n", getpid());
  // 0644 whatever the person's mask is: a lock that others cannot read tells them nothing.
  return MakeFile({.path = path, .mode = 0644, .if_exists = IfExists::kRefuse}, text,
                  Making::kUnnamed);
}

}  // namespace

std::string DeviceOfPort(const std::string& name) {
  const std::unique_ptr<char, decltype(&std::free)> resolved(realpath(name.c_str(), nullptr),
                                                             &std::free);
  return resolved == nullptr ? name : resolved.get();
}

std::string PortLockPath(const PortSharing& sharing, const std::string& device) {
  // Nobody shares a pseudo-terminal, and the number of one that is gone is given again.
  if (device.starts_with("/dev/pts/") && !sharing.locks_pseudo_terminals) return {};
  // "/dev/ttyUSB0" is locked by "/var/lock/LCK..ttyUSB0".
  return sharing.lock_folder + "/LCK.." + device.substr(device.rfind('/') + 1);
}

std::string PortLockHolder(const std::string& lock) {
  return lock.empty() ? "" : Holder(ReadLock(lock), lock);
}

std::string TakePortLock(const std::string& lock, int port) {
  if (lock.empty()) return {};
  for (int i = 0; i < kAttempts; ++i) {
    const Lock found = ReadLock(lock);
    std::string holder = Holder(found, lock);
    if (!holder.empty()) return holder;
    if (found.exists) RemoveStale(lock, found);
    const int error = MakeLock(lock);
    if (error == 0) {
      const std::scoped_lock guard(Own().mutex);
      Own().paths[port] = lock;
    }
    if (error != EEXIST) return {};
  }
  return {};
}

void ReleasePortLock(int port) {
  const std::scoped_lock guard(Own().mutex);
  const auto own = Own().paths.find(port);
  if (own == Own().paths.end()) return;
  // Somebody may have taken our lock for a stale one, from a container where we cannot be seen.
  if (ReadLock(own->second).process == getpid()) unlink(own->second.c_str());
  Own().paths.erase(own);
}

}  // namespace skyhaul
