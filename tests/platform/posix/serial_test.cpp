#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <string>

#include "tests/platform/cable.h"
#include "tests/platform/posix/child.h"

namespace skyhaul {
namespace {

using ::testing::HasSubstr;

class PosixSerial : public ::testing::Test {
 protected:
  Cable cable;
  const char* const name = cable.name.c_str();
};

TEST_F(PosixSerial, AnUnpluggedPortIsAnErrorAtOnce) {
  const Port port(cable.name);
  cable.instrument.Close();
  std::string bytes;
  EXPECT_EQ(port.Read(bytes), -1);
  EXPECT_EQ(port.Write("x"), -1);
  EXPECT_EQ(Serial().configure(nullptr, port.handle, {}), SetupStep::kGetState);
}

// The kernel drops what a pseudo-terminal had received when its other end goes, so the port whose
// last bytes outlive it is a pipe here.
TEST(PosixSerialRead, DeliversTheLastBytesBeforeTheEnd) {
  int ends[2] = {-1, -1};
  ASSERT_EQ(pipe2(ends, O_NONBLOCK | O_CLOEXEC), 0);
  ASSERT_EQ(write(ends[1], "last", 4), 4);
  close(ends[1]);
  const Port port(SerialHandle{ends[0]});
  std::string bytes;
  EXPECT_EQ(port.Read(bytes), 4);
  EXPECT_EQ(port.Read(bytes), -1);
}

TEST_F(PosixSerial, AFailedWriteEmptiesTheOutput) {
  const Port port(cable.name);
  int result = 0;
  for (int i = 0; i < 10000 && result == 0; ++i) result = port.Write(std::string(100, 'x'));
  ASSERT_EQ(result, -1);
  EXPECT_EQ(port.Write("x"), 0);
}

TEST_F(PosixSerial, ConfiguringReleasesStoppedOutput) {
  const Port port(cable.name);
  ASSERT_EQ(tcflow(static_cast<int>(port.handle), TCOOFF), 0);
  EXPECT_EQ(port.Write("x"), -1);
  port.Configure({});
  EXPECT_EQ(port.Write("x"), 0);
}

TEST_F(PosixSerial, SettingsReachTheDevice) {
  const struct {
    SerialSettings settings;
    speed_t speed;
  } cases[] = {{{.baud = 4800}, B4800},
               {{.baud = 9600, .xon_xoff = true}, B9600},
               {{.baud = 38400}, B38400},
               {{.baud = 57600, .xon_xoff = true}, B57600},
               {{.baud = 115200}, B115200}};
  const Port port(cable.name);
  for (const auto& c : cases) {
    SCOPED_TRACE(c.settings.baud);
    port.Configure(c.settings);
    termios state{};
    ASSERT_EQ(tcgetattr(static_cast<int>(port.handle), &state), 0);
    EXPECT_EQ(cfgetospeed(&state), c.speed);
    EXPECT_EQ(cfgetispeed(&state), c.speed);
    EXPECT_EQ(state.c_cflag & (CSIZE | PARENB | CSTOPB | CRTSCTS | CLOCAL | CREAD),
              static_cast<tcflag_t>(CS8 | CLOCAL | CREAD));
    EXPECT_EQ(state.c_iflag, static_cast<tcflag_t>(c.settings.xon_xoff ? IXON | IXOFF : 0));
    EXPECT_EQ(state.c_lflag & (ICANON | ECHO | ISIG | IEXTEN), 0U);
    EXPECT_EQ(state.c_oflag & OPOST, 0U);
    EXPECT_EQ(state.c_cc[VSTART], 0x11);
    EXPECT_EQ(state.c_cc[VSTOP], 0x13);
  }
  for (const uint32_t baud : {0U, 19200U}) {
    EXPECT_EQ(Serial().configure(nullptr, port.handle, {.baud = baud}), SetupStep::kSetState);
  }
}

// The exclusive flag stops a program that knows nothing of locks; only root passes it.
TEST_F(PosixSerial, KeepsOutProgramsThatDoNotLock) {
  if (geteuid() == 0) {
    ASSERT_EQ(chmod(name, 0666), 0);
  }
  const auto open_as_user = [&] {
    if (geteuid() == 0 && seteuid(65534) != 0) return 2;
    return open(name, O_RDWR | O_NOCTTY | O_NONBLOCK) >= 0 ? 1 : 0;
  };
  ASSERT_EQ(InChild(open_as_user), 1) << "the pseudo-terminal was not open to all";
  Port port(cable.name);
  EXPECT_EQ(InChild(open_as_user), 0);
  port.Close();
  EXPECT_EQ(InChild(open_as_user), 1);
}

// Why a user without privileges cannot open the port.
std::string ReasonForUser(const std::string& port) {
  int ends[2] = {-1, -1};
  if (pipe2(ends, O_CLOEXEC) != 0) return {};
  InChild([&] {
    if (seteuid(65534) != 0) return 1;
    const PortOpening opening = Serial().open(nullptr, port);
    if (opening.problem != PortProblem::kDenied) return 1;
    return write(ends[1], opening.reason.data(), opening.reason.size()) < 0 ? 1 : 0;
  });
  close(ends[1]);
  std::string reason;
  Port(SerialHandle{ends[0]}).Read(reason, 500);
  return reason;
}

TEST_F(PosixSerial, SaysHowToGetPermission) {
  if (geteuid() != 0) GTEST_SKIP() << "only root can hand a device to another group";
  const struct {
    mode_t mode;
    gid_t group;
    std::string reason;
  } cases[] = {
      {0660, 54321,
       "No permission for " + cable.name +
           ": add yourself to the group \"54321\" that owns the port (sudo usermod -aG 54321 "
           "$USER), then log in again"},
      {0660, 1, "the group \"daemon\" that owns the port (sudo usermod -aG daemon $USER)"},
      {0620, 1, "only its owner may use the port"},
  };
  for (const auto& c : cases) {
    ASSERT_EQ(chown(name, 0, c.group), 0);
    ASSERT_EQ(chmod(name, c.mode), 0);
    EXPECT_THAT(ReasonForUser(cable.name), HasSubstr(c.reason));
  }
}

TEST(PosixSerialNames, OnlyPathsAreNames) {
  EXPECT_TRUE(IsPortName("/dev/ttyUSB0"));
  for (const char* text : {"", "1", "COM1", "dev/ttyUSB0"}) EXPECT_FALSE(IsPortName(text)) << text;
}

}  // namespace
}  // namespace skyhaul
