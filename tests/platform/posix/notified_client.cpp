#include "tests/platform/notified_client.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <array>

#include "platform/posix/descriptor.h"
#include "tests/support/scratch_folder.h"

namespace skyhaul {

struct NotifiedClient::Own {
  Descriptor socket;
  std::string path;
};

NotifiedClient::NotifiedClient(const std::string& name)
    : own(new Own{Descriptor(socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0)), name}) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::copy(name.begin(), name.end(), address.sun_path);
  unlink(name.c_str());
  EXPECT_EQ(bind(own->socket.fd, reinterpret_cast<const sockaddr*>(&address), sizeof(address)), 0);
}

// The socket's file stays, as that of a client that crashed.
NotifiedClient::~NotifiedClient() = default;

// Texts wait in the socket until somebody reads them.
void NotifiedClient::Hang() {}

std::vector<std::string> NotifiedClient::TakeTexts() {
  std::vector<std::string> texts;
  std::array<char, 5000> text{};
  for (;;) {
    const ssize_t count = recv(own->socket.fd, text.data(), text.size(), MSG_DONTWAIT);
    if (count < 0) return texts;
    texts.emplace_back(text.data(), static_cast<size_t>(count));
  }
}

std::string ClientName() {
  static const ScratchFolder folder;
  return folder.File("client");
}

std::vector<std::string> NobodysNames() {
  return {"", "/none", "/tmp", "/" + std::string(300, 'x')};
}

}  // namespace skyhaul
