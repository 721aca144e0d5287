#include <gtest/gtest.h>
#include <stdlib.h>

#include <cstdio>
#include <string>

#include "platform/file.h"
#include "platform/platform.h"
#include "tests/platform/posix/scratch.h"

namespace skyhaul {
namespace {

// A session bus and a secret service that keeps its secrets below $HOME, both ended by kEndSession.
constexpr const char* kStartSession = R"(
  mkdir -m 700 "$XDG_RUNTIME_DIR"
  dbus-daemon --session --fork --print-address=3 --print-pid=4 3>"$HOME/bus" 4>"$HOME/bus-pid"
  export DBUS_SESSION_BUS_ADDRESS=$(cat "$HOME/bus")
  printf pw | gnome-keyring-daemon --foreground --unlock --components=secrets >/dev/null 2>&1 &
  echo $! >"$HOME/service-pid"
  for i in $(seq 500); do
    dbus-send --session --print-reply --dest=org.freedesktop.DBus / \
      org.freedesktop.DBus.NameHasOwner string:org.freedesktop.secrets | grep -q true && exit 0
    sleep 0.02
  done
  exit 1
)";
constexpr const char* kEndSession = R"(kill $(cat "$HOME/service-pid" "$HOME/bus-pid"))";

class SecretServiceTest : public testing::Test {
 protected:
  void SetUp() override {
    setenv("HOME", folder.path.c_str(), 1);
    setenv("XDG_RUNTIME_DIR", (folder.path + "/run").c_str(), 1);
    setenv("XDG_DATA_HOME", (folder.path + "/data").c_str(), 1);
    setenv("DBUS_SESSION_BUS_ADDRESS", ("unix:path=" + folder.path + "/none").c_str(), 1);
    unsetenv("DISPLAY");
  }

  void TearDown() override {
    if (!FileExists(folder.path + "/service-pid")) return;
    EXPECT_EQ(system(kEndSession), 0);
  }

  ScratchFolder folder;
};

int Require(bool holds, const char* what) {
  if (!holds) std::fprintf(stderr, "%s\n", what);
  return holds ? 0 : 1;
}

// In a process of its own: the service's library has threads that never end.
int UseSecrets() {
  const SecretFunctions& secrets = NativePlatform().secret;
  const auto store = [&](const char* id, const std::string& secret) {
    std::string reason;
    return secrets.store(nullptr, "P", id, secret, reason);
  };
  const auto finds = [&](const char* id, const std::string& expected) {
    std::string reason;
    std::string secret;
    const SecretResult result = secrets.load(nullptr, "P", id, secret, reason);
    return secret == expected &&
           result == (expected.empty() ? SecretResult::kMissing : SecretResult::kDone);
  };
  std::string reason;
  int failures = Require(store("one", "first \xc3\xbc") == SecretResult::kDone, "store");
  failures += Require(store("two", "second") == SecretResult::kDone, "store a second");
  failures += Require(store("one", "third") == SecretResult::kDone, "replace");
  failures += Require(finds("one", "third") && finds("two", "second"), "load");
  failures += Require(finds("three", ""), "load what is not there");
  failures += Require(secrets.erase(nullptr, "P", "one", reason) == SecretResult::kDone, "erase");
  failures += Require(secrets.erase(nullptr, "P", "one", reason) == SecretResult::kMissing,
                      "erase what is not there");
  failures += Require(finds("one", "") && finds("two", "second"), "load after erasing");
  return failures;
}

TEST_F(SecretServiceTest, KeepsSecretsByNameAndId) {
  ASSERT_EQ(system(kStartSession), 0) << "the secret service did not start";
  std::string address;
  ReadWholeFile(folder.path + "/bus", address);
  setenv("DBUS_SESSION_BUS_ADDRESS", address.substr(0, address.find('\n')).c_str(), 1);
  EXPECT_EQ(InChild(UseSecrets), 0);
}

TEST_F(SecretServiceTest, SaysWhyThereIsNone) {
  const int result = InChild([] {
    std::string reason;
    const SecretFunctions& secrets = NativePlatform().secret;
    const SecretResult stored = secrets.store(nullptr, "P", "one", "secret", reason);
    return Require(stored == SecretResult::kFailed && !reason.empty(), "store without a service");
  });
  EXPECT_EQ(result, 0);
}

}  // namespace
}  // namespace skyhaul
