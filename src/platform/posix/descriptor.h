#pragma once

#include <unistd.h>

namespace skyhaul {

// Owns a file descriptor and closes it at the end of its scope.
struct Descriptor {
  explicit Descriptor(int opened) : fd(opened) {}
  ~Descriptor() {
    if (fd >= 0) close(fd);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  // Gives the descriptor to another owner.
  int Release() {
    const int released = fd;
    fd = -1;
    return released;
  }

  int fd;  // negative: opening failed
};

}  // namespace skyhaul
