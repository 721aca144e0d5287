#include "platform/append_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

#include "platform/posix/system_reason.h"

namespace skyhaul {

namespace {

int DescriptorOf(AppendHandle file) {
  return static_cast<int>(file);
}

}  // namespace

AppendOpening OpenToAppend(const std::string& path) {
  // Without O_NONBLOCK a pipe would be waited for, here and at each full buffer. 0600: what
  // instruments say has names and places in it.
  constexpr int kFlags = O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NOCTTY | O_NONBLOCK;
  const int fd = open(path.c_str(), kFlags, 0600);
  if (fd < 0) return {.handle = kNoAppendHandle, .reason = SystemReason(errno)};
  if (isatty(fd) == 0) return {.handle = fd, .reason = {}};
  close(fd);
  return {.handle = kNoAppendHandle, .reason = "It is a terminal or a serial port"};
}

std::string Append(AppendHandle file, std::string_view text) {
  while (!text.empty()) {
    const ssize_t count = write(DescriptorOf(file), text.data(), text.size());
    const int error = errno;
    if (count < 0 && error == EINTR) continue;
    // A device that takes nothing and says so would be asked for ever.
    if (count <= 0) return SystemReason(count == 0 ? EIO : error);
    text.remove_prefix(static_cast<size_t>(count));
  }
  return {};
}

void SettleAppended(AppendHandle file) {
  // A terminal refuses, and the next write tells of a disk in trouble.
  static_cast<void>(fdatasync(DescriptorOf(file)));
}

void CloseAppended(AppendHandle file) {
  close(DescriptorOf(file));
}

}  // namespace skyhaul
