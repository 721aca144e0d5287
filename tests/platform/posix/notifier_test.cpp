#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "platform/platform.h"
#include "tests/platform/posix/scratch.h"

namespace skyhaul {
namespace {

int Send(const std::string& client, const std::string& text) {
  return NativePlatform().notifier.send(nullptr, client, text);
}

struct Client {
  explicit Client(const std::string& path) : fd(socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::copy(path.begin(), path.end(), address.sun_path);
    is_bound = bind(fd, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0;
  }
  ~Client() { close(fd); }
  Client(const Client&) = delete;
  Client& operator=(const Client&) = delete;

  // The next text, or "(none)".
  std::string Receive() const {
    std::array<char, 5000> text{};
    const ssize_t count = recv(fd, text.data(), text.size(), MSG_DONTWAIT);
    return count < 0 ? "(none)" : std::string(text.data(), static_cast<size_t>(count));
  }

  int fd;
  bool is_bound = false;
};

TEST(Notifier, TextsArriveWholeAndInOrder) {
  const ScratchFolder folder;
  const std::string path = folder.path + "/client";
  const Client client(path);
  ASSERT_TRUE(client.is_bound);
  const std::vector<std::string> texts = {"first", std::string(4000, 'x'), "", "third"};
  for (const std::string& text : texts) EXPECT_EQ(Send(path, text), 0);
  for (const std::string& text : texts) EXPECT_EQ(client.Receive(), text);
}

TEST(Notifier, AMissingClientIsAFailure) {
  const ScratchFolder folder;
  EXPECT_EQ(Send("", "text"), -1);
  EXPECT_EQ(Send(folder.path + "/none", "text"), -1);
  EXPECT_EQ(Send(folder.path, "text"), -1);
  EXPECT_EQ(Send("/" + std::string(300, 'x'), "text"), -1);
  const std::string left_over = folder.path + "/left_over";
  { const Client gone(left_over); }
  EXPECT_EQ(Send(left_over, "text"), -1);
}

// A client that hangs costs one wait of a second; it is served again once it reads.
TEST(Notifier, AHangingClientIsWaitedForOnce) {
  const ScratchFolder folder;
  const std::string path = folder.path + "/client";
  const Client client(path);
  ASSERT_TRUE(client.is_bound);
  const ClockFunctions& clock = NativePlatform().clock;
  int accepted = 0;
  uint64_t start_ms = clock.tick_ms(nullptr);
  while (accepted < 10000 && Send(path, std::to_string(accepted)) == 0) {
    ++accepted;
    start_ms = clock.tick_ms(nullptr);
  }
  ASSERT_GT(accepted, 0);
  ASSERT_LT(accepted, 10000);
  EXPECT_GE(clock.tick_ms(nullptr) - start_ms, 990U);

  start_ms = clock.tick_ms(nullptr);
  for (int i = 0; i < 20; ++i) EXPECT_EQ(Send(path, "lost"), -1);
  EXPECT_LT(clock.tick_ms(nullptr) - start_ms, 10000U) << "20 waits would take 20 seconds";

  for (int i = 0; i < accepted; ++i) EXPECT_EQ(client.Receive(), std::to_string(i));
  EXPECT_EQ(client.Receive(), "(none)");
  EXPECT_EQ(Send(path, "again"), 0);
  EXPECT_EQ(client.Receive(), "again");
}

}  // namespace
}  // namespace skyhaul
