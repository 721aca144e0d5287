#include "platform/file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <system_error>

#include "platform/posix/descriptor.h"
#include "platform/posix/new_file.h"
#include "platform/posix/system_reason.h"

namespace skyhaul {

namespace {

// A flight has a few megabytes. What is larger by far is something else (a disk image, /dev/zero)
// and would use the memory up.
constexpr size_t kMaxFileSize = size_t{1} << 30;
constexpr size_t kChunk = size_t{1} << 16;

FileProblem ProblemFromError(int error) {
  switch (error) {
    case EEXIST:
      return FileProblem::kExists;
    case ENOENT:
    case ENOTDIR:
      return FileProblem::kMissing;
    case EACCES:
    case EPERM:
    case EROFS:
      return FileProblem::kDenied;
    case EISDIR:
      return FileProblem::kIsDirectory;
    case EFBIG:
      return FileProblem::kTooLarge;
    default:
      return FileProblem::kOther;
  }
}

FileResult Failure(int error) {
  return {.problem = ProblemFromError(error), .reason = SystemReason(error)};
}

// Reads to the end, not to a size: pipes have none, and the files that the kernel makes up lie.
// Returns 0 or an errno value.
int ReadToEnd(int fd, std::string& text) {
  for (;;) {
    const size_t have = text.size();
    text.resize(have + kChunk);
    const ssize_t count = read(fd, text.data() + have, kChunk);
    const int error = errno;
    text.resize(have + static_cast<size_t>(std::max<ssize_t>(count, 0)));
    if (text.size() > kMaxFileSize) return EFBIG;
    if (count == 0) return 0;
    if (count < 0 && error != EINTR) return error;  // EINTR: a signal came before the first byte
  }
}

int OpenAndRead(const std::string& path, std::string& text) {
  const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC));
  struct stat status {};
  if (file.fd < 0 || fstat(file.fd, &status) != 0) return errno;
  // A folder can be opened; only reading it fails.
  if (S_ISDIR(status.st_mode)) return EISDIR;
  if (status.st_size > static_cast<off_t>(kMaxFileSize)) return EFBIG;
  // One chunk more, because the read that finds the end asks for one too.
  if (S_ISREG(status.st_mode)) text.reserve(static_cast<size_t>(status.st_size) + kChunk);
  return ReadToEnd(file.fd, text);
}

// What a path leads to at this moment, links followed.
struct Target {
  std::string path;
  bool exists = false;
  bool named = false;  // something has the name, even if it leads nowhere
  mode_t mode = 0;     // kind and permissions; 0 when nothing exists
};

// Only a regular file's own name is looked for: "/dev/stdout" can be a link to a pipe that has
// none.
Target FindTarget(const std::string& path) {
  Target target;
  target.path = path;
  struct stat status {};
  if (stat(path.c_str(), &status) != 0) {
    // A link that leads nowhere yet: the file is made where it leads to.
    std::error_code ignored;
    const std::filesystem::path leads_to = std::filesystem::read_symlink(path, ignored);
    target.named = !leads_to.empty();
    if (target.named) target.path = std::filesystem::path(path).parent_path() / leads_to;
    return target;
  }
  target.exists = true;
  target.named = true;
  target.mode = status.st_mode;
  if (!S_ISREG(status.st_mode)) return target;
  const std::unique_ptr<char, decltype(&std::free)> resolved(realpath(path.c_str(), nullptr),
                                                             &std::free);
  if (resolved != nullptr) target.path = resolved.get();
  return target;
}

// A device or a pipe is written to, never replaced by a file. Without O_NOCTTY a terminal that is
// written to could become the one whose Ctrl-C ends the program.
int WriteDirectly(const std::string& path, const std::string& text) {
  const Descriptor file(open(path.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY));
  return file.fd < 0 ? errno : WriteAll(file.fd, text);
}

int WriteTarget(const Target& target, const std::string& text, IfExists if_exists) {
  if (S_ISDIR(target.mode)) return EISDIR;
  if (target.named && if_exists == IfExists::kRefuse) return EEXIST;
  if (target.exists && !S_ISREG(target.mode)) return WriteDirectly(target.path, text);
  // Renaming asks for permission to change the folder only, so a write-protected file is checked.
  if (target.exists && access(target.path.c_str(), W_OK) != 0) return errno;
  NewFile wanted{.path = target.path, .mode = std::nullopt, .if_exists = if_exists};
  if (target.exists) wanted.mode = target.mode & 07777;
  return MakeFile(wanted, text, Making::kUnnamed);
}

}  // namespace

FileResult ReadWholeFile(const std::string& path, std::string& text) {
  text.clear();
  const int error = OpenAndRead(path, text);
  if (error == 0) return {};
  text.clear();  // no caller takes the first part of a file for the whole
  return Failure(error);
}

FileResult WriteWholeFile(const std::string& path, const std::string& text, IfExists if_exists) {
  const int error = WriteTarget(FindTarget(path), text, if_exists);
  return error == 0 ? FileResult{} : Failure(error);
}

FileResult MakeFolder(const std::string& path) {
  if (mkdir(path.c_str(), 0777) == 0) return {};
  const int error = errno;
  return IsDirectory(path) ? FileResult{} : Failure(error);
}

bool FolderIsWritable(const std::string& path) {
  return IsDirectory(path) && access(path.c_str(), W_OK | X_OK) == 0;
}

bool SameFile(const std::string& left, const std::string& right) {
  struct stat left_status {};
  struct stat right_status {};
  // stat() follows links, and the number of the file is the same for all of its names.
  return stat(left.c_str(), &left_status) == 0 && stat(right.c_str(), &right_status) == 0 &&
         S_ISREG(left_status.st_mode) && left_status.st_dev == right_status.st_dev &&
         left_status.st_ino == right_status.st_ino;
}

bool FileExists(const std::string& path) {
  return access(path.c_str(), F_OK) == 0;
}

bool IsDirectory(const std::string& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

}  // namespace skyhaul
