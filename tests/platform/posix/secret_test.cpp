#include <gtest/gtest.h>
#include <stdlib.h>

#include <iterator>
#include <string>

#include "platform/file.h"
#include "platform/platform.h"
#include "tests/platform/posix/child.h"
#include "tests/support/scratch_folder.h"

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

struct SecretServiceTest : testing::Test {
  void SetUp() override {
    setenv("HOME", folder.path.c_str(), 1);
    setenv("XDG_RUNTIME_DIR", folder.File("run").c_str(), 1);
    setenv("XDG_DATA_HOME", folder.File("data").c_str(), 1);
    setenv("DBUS_SESSION_BUS_ADDRESS", ("unix:path=" + folder.File("none")).c_str(), 1);
    unsetenv("DISPLAY");
  }

  void TearDown() override {
    if (!FileExists(folder.File("service-pid"))) return;
    EXPECT_EQ(system(kEndSession), 0);
  }

  ScratchFolder folder;
};

// In a process of its own: the service's library has threads that never end. Returns the number of
// the step that failed, from 1, or 0.
int UseSecrets() {
  const SecretFunctions& secrets = NativePlatform().secret;
  std::string reason;
  const auto store = [&](const char* id, const char* secret) {
    return secrets.store(nullptr, "P", id, secret, reason) == SecretResult::kDone;
  };
  const auto load = [&](const char* id) {
    std::string secret;
    const SecretResult result = secrets.load(nullptr, "P", id, secret, reason);
    return result == SecretResult::kMissing ? "(missing)" : secret;
  };
  const auto erase = [&](const char* id) { return secrets.erase(nullptr, "P", id, reason); };
  const bool steps[] = {store("one", "first \xc3\xbc"),
                        store("two", "second"),
                        load("one") == "first \xc3\xbc",
                        store("one", "third"),
                        load("one") == "third",
                        erase("one") == SecretResult::kDone,
                        erase("one") == SecretResult::kMissing,
                        load("one") == "(missing)",
                        load("two") == "second"};
  for (size_t i = 0; i < std::size(steps); ++i) {
    if (!steps[i]) return static_cast<int>(i) + 1;
  }
  return 0;
}

TEST_F(SecretServiceTest, KeepsSecretsByNameAndId) {
  ASSERT_EQ(system(kStartSession), 0) << "the secret service did not start";
  const std::string address = ReadText(folder.File("bus"));
  setenv("DBUS_SESSION_BUS_ADDRESS", address.substr(0, address.find('\n')).c_str(), 1);
  EXPECT_EQ(InChild(UseSecrets), 0);
}

}  // namespace
}  // namespace skyhaul
