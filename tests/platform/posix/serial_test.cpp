#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

#include <array>

#include "tests/platform/cable.h"
#include "tests/platform/posix/child.h"

namespace skyhaul {

// A pseudo-terminal: the program opens its slave, and the instrument has the master.
Cable::Cable() : instrument(posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC)) {
  const int master = static_cast<int>(instrument.handle);
  std::array<char, 100> buffer{};
  if (grantpt(master) == 0 && unlockpt(master) == 0 &&
      ptsname_r(master, buffer.data(), buffer.size()) == 0) {
    name = buffer.data();
  }
}

bool HasCable() {
  return true;
}

std::vector<NoPort> NoPorts() {
  return {
      {"/dev/none", PortProblem::kMissing, "There is no port /dev/none"},
      {"/dev/null/below", PortProblem::kMissing, "There is no port /dev/null/below"},
      {"/etc/passwd", PortProblem::kOther, "/etc/passwd is not a serial port"},
      {"/dev/null", PortProblem::kOther, "/dev/null is not a serial port"},
      {"COM7", PortProblem::kMissing, "There is no port 7: --ports lists the ports"},
      {"dev/null", PortProblem::kMissing, "There is no port dev/null: --ports lists the ports"},
      {"", PortProblem::kMissing, "There is no port"},
  };
}

namespace {

using ::testing::HasSubstr;

struct PosixSerial : testing::Test {
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
  ASSERT_GT(port.WriteUntilItFails(), 0U);
  EXPECT_EQ(port.Write("x"), 0);
}

TEST_F(PosixSerial, StoppedOutputCanBeReleased) {
  const Port port(cable.name, {.xon_xoff = true});
  ASSERT_EQ(tcflow(static_cast<int>(port.handle), TCOOFF), 0);
  EXPECT_EQ(port.Write("x"), -1);
  port.Configure({.xon_xoff = true});
  EXPECT_EQ(port.Write("x"), 0);
  // An XOFF whose XON is lost.
  ASSERT_EQ(cable.instrument.Write("\x13"), 0);
  EXPECT_EQ(port.ReadAll(1, 1), "");
  EXPECT_EQ(port.Write("x"), -1);
  Serial().free_output(nullptr, port.handle);
  EXPECT_EQ(port.Write("x"), 0);
}

TEST_F(PosixSerial, SettingsReachTheDevice) {
  const std::pair<uint32_t, speed_t> cases[] = {
      {4800, B4800}, {9600, B9600}, {38400, B38400}, {57600, B57600}, {115200, B115200}};
  const Port port(cable.name);
  for (const auto& [baud, speed] : cases) {
    SCOPED_TRACE(baud);
    const bool xon_xoff = baud == 9600;
    port.Configure({.baud = baud, .xon_xoff = xon_xoff});
    termios state{};
    ASSERT_EQ(tcgetattr(static_cast<int>(port.handle), &state), 0);
    EXPECT_EQ(cfgetospeed(&state), speed);
    EXPECT_EQ(cfgetispeed(&state), speed);
    EXPECT_EQ(state.c_cflag & (CSIZE | PARENB | CSTOPB | CRTSCTS | CLOCAL | CREAD),
              static_cast<tcflag_t>(CS8 | CLOCAL | CREAD));
    EXPECT_EQ(state.c_iflag, static_cast<tcflag_t>(xon_xoff ? IXON | IXOFF : 0));
    EXPECT_EQ(state.c_lflag & (ICANON | ECHO | ISIG | IEXTEN), 0U);
    EXPECT_EQ(state.c_oflag & OPOST, 0U);
    EXPECT_EQ(state.c_cc[VSTART], 0x11);
    EXPECT_EQ(state.c_cc[VSTOP], 0x13);
  }
  EXPECT_EQ(Serial().configure(nullptr, port.handle, {.baud = 19200}), SetupStep::kSetState);
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

TEST_F(PosixSerial, SaysHowToGetPermission) {
  if (geteuid() != 0) GTEST_SKIP() << "only root can hand a device to another group";
  const std::tuple<mode_t, gid_t, std::string> cases[] = {
      {0660, 54321,
       "No permission for " + cable.name +
           ": add yourself to the group \"54321\" that owns the port (sudo usermod -aG 54321 "
           "$USER), then log in again"},
      {0660, 1, "the group \"daemon\" that owns the port (sudo usermod -aG daemon $USER)"},
      {0620, 1, "only its owner may use the port"},
  };
  for (const auto& [mode, group, reason] : cases) {
    ASSERT_EQ(chown(name, 0, group), 0);
    ASSERT_EQ(chmod(name, mode), 0);
    const int failed = InChild([&, &reason = reason] {
      if (seteuid(65534) != 0) return 2;
      const PortOpening opening = Serial().open(nullptr, cable.name);
      EXPECT_EQ(opening.problem, PortProblem::kDenied);
      EXPECT_THAT(opening.reason, HasSubstr(reason));
      return HasFailure() ? 1 : 0;
    });
    EXPECT_EQ(failed, 0) << reason;
  }
}

}  // namespace
}  // namespace skyhaul
