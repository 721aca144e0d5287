#include "platform/posix/new_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>

#include "platform/posix/descriptor.h"
#include "platform/posix/leftovers.h"
#include "platform/temporary_name.h"

namespace skyhaul {

namespace {

constexpr size_t kMaxNameInTemporary = 200;  // leaves room for the rest within 255
constexpr int kTemporaryAttempts = 100;

// The file before it has the name that was asked for. The destructor removes what it is called
// until then.
struct Unfinished {
  explicit Unfinished(const std::string& path)
      : name_start(path.rfind('/') + 1),  // npos + 1 is 0
        folder(name_start == 0 ? "./" : path.substr(0, name_start)),
        name(path.substr(name_start, kMaxNameInTemporary)),
        file(-1) {}
  ~Unfinished() {
    if (!temporary.empty()) unlink(temporary.c_str());
  }
  Unfinished(const Unfinished&) = delete;
  Unfinished& operator=(const Unfinished&) = delete;

  size_t name_start;
  std::string folder;  // with the slash at its end
  std::string name;
  std::string temporary;  // what it is called for now; empty: nothing
  Descriptor file;
};

// The kernel's name for an open file, by which an unnamed one can be linked.
std::string KernelName(const Unfinished& unfinished) {
  return "/proc/self/fd/" + std::to_string(unfinished.file.fd);
}

// Tries temporary names until one is free; take(path) returns 0 or -1 with errno.
template <typename Take>
int TakeTemporaryName(Unfinished& unfinished, Take take) {
  static std::atomic<unsigned> counter = 0;
  // The dot hides it: a program that watches the folder for flights does not pick up half of one.
  const std::string start = unfinished.folder + "." + unfinished.name;
  for (int i = 0; i < kTemporaryAttempts; ++i) {
    // The counter tells threads apart, the process number programs. A name may still be taken by
    // what a crash has left over, hence another try.
    const std::string path = start + TemporarySuffix(static_cast<uint32_t>(getpid()), counter++);
    if (take(path) == 0) {
      unfinished.temporary = path;
      return 0;
    }
    if (errno != EEXIST) return errno;
  }
  return EEXIST;
}

int OpenUnnamed(Unfinished& unfinished) {
  unfinished.file.fd = open(unfinished.folder.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0666);
  if (unfinished.file.fd < 0) return errno;
  // Without /proc, as in some containers, it could never get its name.
  return access(KernelName(unfinished).c_str(), F_OK) == 0 ? 0 : errno;
}

int OpenNamed(Unfinished& unfinished) {
  return TakeTemporaryName(unfinished, [&](const std::string& path) {
    unfinished.file.fd = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    return unfinished.file.fd < 0 ? -1 : 0;
  });
}

// The bytes and the permissions are on the disk before the name is.
int Fill(const Unfinished& unfinished, const NewFile& wanted, const std::string& text) {
  const int fd = unfinished.file.fd;
  // Before the text, which is then never readable by more people than the old one was.
  if (wanted.mode.has_value() && fchmod(fd, *wanted.mode) != 0) return errno;
  const int error = WriteAll(fd, text);
  if (error != 0) return error;
  // Without it a crash can leave the new name without any bytes.
  return fsync(fd) == 0 ? 0 : errno;
}

// For file systems that know neither of the ways below: the name is taken by an empty file, which
// the finished one then replaces.
int ReserveAndRename(const std::string& from, const std::string& to) {
  const Descriptor reserved(open(to.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
  if (reserved.fd < 0) return errno;
  if (rename(from.c_str(), to.c_str()) == 0) return 0;
  const int error = errno;
  unlink(to.c_str());
  return error;
}

// Some network file systems cannot rename without replacing, and some cannot make a second link to
// a file either.
int RenameOrRefuse(const std::string& from, const std::string& to) {
  if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return 0;
  if (errno != EINVAL && errno != ENOSYS) return errno;
  if (link(from.c_str(), to.c_str()) != 0) {
    return errno == EEXIST ? EEXIST : ReserveAndRename(from, to);
  }
  unlink(from.c_str());
  return 0;
}

int LinkUnnamed(const Unfinished& unfinished, const std::string& to) {
  const std::string from = KernelName(unfinished);
  return linkat(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), AT_SYMLINK_FOLLOW);
}

int TakeName(Unfinished& unfinished, const NewFile& wanted) {
  const bool replace = wanted.if_exists == IfExists::kReplace;
  if (unfinished.temporary.empty()) {
    if (LinkUnnamed(unfinished, wanted.path) == 0) return 0;
    if (errno != EEXIST || !replace) return errno;
    // A link cannot replace a file, only a rename can, and that needs a name: the finished file has
    // a temporary one between these two calls.
    const int error = TakeTemporaryName(
        unfinished, [&](const std::string& path) { return LinkUnnamed(unfinished, path); });
    if (error != 0) return error;
  }
  if (!replace) {
    const int error = RenameOrRefuse(unfinished.temporary, wanted.path);
    if (error != 0) return error;
  } else if (rename(unfinished.temporary.c_str(), wanted.path.c_str()) != 0) {
    return errno;
  }
  unfinished.temporary.clear();
  return 0;
}

// One way to make the file. On failure placing says that it found no place in the folder, which
// another way may find, and not that the text could not be written. Returns 0 or an errno value.
int MakeOnce(const NewFile& wanted, const std::string& text, Making making, bool& placing) {
  Unfinished unfinished(wanted.path);
  placing = false;
  int error = making == Making::kUnnamed ? OpenUnnamed(unfinished) : OpenNamed(unfinished);
  placing = error != 0;
  if (error != 0) return error;
  // Before the text is written, because on a full disk the leftovers' room may be what it needs.
  RemoveLeftovers(unfinished.folder, unfinished.file.fd);
  error = Fill(unfinished, wanted, text);
  if (error != 0) return error;
  error = TakeName(unfinished, wanted);
  placing = error != 0 && error != EEXIST;
  if (error != 0) return error;
  // Flushing the folder makes the new name survive a crash. The file is there and whole, whether or
  // not its folder can be flushed.
  const Descriptor folder(open(unfinished.folder.c_str(), O_RDONLY | O_CLOEXEC));
  if (folder.fd >= 0) fsync(folder.fd);
  return 0;
}

}  // namespace

int WriteAll(int fd, const std::string& text) {
  size_t done = 0;
  while (done < text.size()) {
    // A pipe or a disk that is nearly full takes a part; the next call gets the reason.
    const ssize_t count = write(fd, text.data() + done, text.size() - done);
    if (count < 0 && errno == EINTR) continue;
    // A device that takes nothing and says so would be asked for ever.
    if (count <= 0) return count == 0 ? EIO : errno;
    done += static_cast<size_t>(count);
  }
  return 0;
}

int MakeFile(const NewFile& wanted, const std::string& text, Making making) {
  bool placing = false;
  const int error = MakeOnce(wanted, text, making, placing);
  if (error == 0 || !placing || making == Making::kTemporaryName) return error;
  // File systems refuse unnamed files with EOPNOTSUPP, old kernels with EISDIR or ENOENT, and some
  // refuse the link only. Whatever it was: the other way works or has a reason for the person.
  return MakeOnce(wanted, text, Making::kTemporaryName, placing);
}

}  // namespace skyhaul
