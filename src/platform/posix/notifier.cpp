#include "platform/posix/notifier.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <algorithm>
#include <cerrno>

#include "platform/posix/clock.h"
#include "platform/posix/descriptor.h"
#include "platform/posix/failed_clients.h"

namespace skyhaul {

namespace {

constexpr uint64_t kPatience_ms = 1000;
constexpr uint64_t kRetry_ms = 20;  // how late it is seen that the client has gone

FailedClients& Failed() {
  static FailedClients failed;
  return failed;
}

// poll() on an unconnected socket says that there is room whenever its own buffer has some; only on
// a connected one it looks at the client's queue.
int Connect(int fd, const std::string& client) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  // An empty path would be an abstract address. The size leaves room for the zero at the end.
  if (client.empty() || client.size() >= sizeof(address.sun_path)) return -1;
  std::copy(client.begin(), client.end(), address.sun_path);
  return connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof(address));
}

bool MayRetry(int error) {
  return error == EAGAIN || error == EWOULDBLOCK || error == EINTR || error == ENOBUFS;
}

int SendWithin(int fd, const std::string& text, uint64_t patience_ms) {
  const uint64_t end_ms = MonotonicMilliseconds() + patience_ms;
  for (;;) {
    // MSG_NOSIGNAL: a client that has just closed its socket is an error, not the program's end.
    const ssize_t sent = send(fd, text.data(), text.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
    if (sent >= 0) return 0;
    if (!MayRetry(errno)) return -1;
    const uint64_t now_ms = MonotonicMilliseconds();
    if (now_ms >= end_ms) return -1;
    pollfd wanted{.fd = fd, .events = POLLOUT, .revents = 0};
    // In slices, because poll() does not return when the client goes away.
    poll(&wanted, 1, static_cast<int>(std::min(end_ms - now_ms, kRetry_ms)));
  }
}

int Deliver(const std::string& client, const std::string& text, uint64_t patience_ms) {
  const Descriptor socket_to_client(socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0));
  if (socket_to_client.fd < 0 || Connect(socket_to_client.fd, client) != 0) return -1;
  return SendWithin(socket_to_client.fd, text, patience_ms);
}

int Send(void*, const std::string& client, const std::string& text) {
  // A socket for each text: a client that was started anew has the same path and another socket.
  const int result = Deliver(client, text, HasFailed(Failed(), client) ? 0 : kPatience_ms);
  RememberClient(Failed(), client, result != 0);
  return result;
}

}  // namespace

NotifierFunctions PosixNotifier() {
  return {.send = Send};
}

}  // namespace skyhaul
