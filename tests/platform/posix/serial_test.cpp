#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <numeric>
#include <string>
#include <vector>

#include "platform/platform.h"
#include "tests/platform/posix/scratch.h"

namespace skyhaul {
namespace {

using ::testing::HasSubstr;

const SerialFunctions& Serial() {
  return NativePlatform().serial;
}

PortOpening Open(const std::string& name) {
  return Serial().open(nullptr, name);
}

// A pseudo-terminal: the instrument's end, and the name of the end that the program opens.
struct PseudoTerminal {
  PseudoTerminal() : master(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)) {
    std::array<char, 100> buffer{};
    if (grantpt(master) == 0 && unlockpt(master) == 0 &&
        ptsname_r(master, buffer.data(), buffer.size()) == 0) {
      name = buffer.data();
    }
  }
  ~PseudoTerminal() { Unplug(); }
  PseudoTerminal(const PseudoTerminal&) = delete;
  PseudoTerminal& operator=(const PseudoTerminal&) = delete;

  void Unplug() {
    if (master >= 0) close(master);
    master = -1;
  }

  int master;
  std::string name;
};

class SerialPort : public ::testing::Test {
 protected:
  void TearDown() override {
    if (port != kNoSerialHandle) Serial().close(nullptr, port);
  }

  void OpenConfigured(const SerialSettings& settings) {
    const PortOpening opening = Open(terminal.name);
    ASSERT_EQ(opening.problem, PortProblem::kNone) << opening.reason;
    EXPECT_EQ(opening.reason, "");
    port = opening.handle;
    ASSERT_EQ(Serial().configure(nullptr, port, settings), SetupStep::kNone);
  }

  int Read(std::vector<uint8_t>& bytes, size_t capacity = 100) {
    bytes.resize(capacity);
    const int count = Serial().read(nullptr, port, bytes.data(), bytes.size());
    bytes.resize(count > 0 ? static_cast<size_t>(count) : 0);
    return count;
  }

  PseudoTerminal terminal;
  SerialHandle port = kNoSerialHandle;
};

std::vector<uint8_t> AllBytes() {
  std::vector<uint8_t> bytes(256);
  std::iota(bytes.begin(), bytes.end(), uint8_t{0});
  return bytes;
}

TEST_F(SerialPort, PassesEveryByteUnchangedInBothDirections) {
  ASSERT_NO_FATAL_FAILURE(OpenConfigured({}));
  const std::vector<uint8_t> sent = AllBytes();

  ASSERT_EQ(write(terminal.master, sent.data(), sent.size()), 256);
  std::vector<uint8_t> received;
  std::vector<uint8_t> part;
  while (received.size() < sent.size() && Read(part) > 0) {
    EXPECT_LE(part.size(), 100U);
    received.insert(received.end(), part.begin(), part.end());
  }
  EXPECT_EQ(received, sent);

  ASSERT_EQ(Serial().write(nullptr, port, sent.data(), sent.size()), 0);
  received.clear();
  part.resize(256);
  while (received.size() < sent.size()) {
    const ssize_t count = read(terminal.master, part.data(), part.size());
    ASSERT_GT(count, 0);
    received.insert(received.end(), part.begin(), part.begin() + count);
  }
  EXPECT_EQ(received, sent) << "also shows that nothing was echoed in between";
}

TEST_F(SerialPort, ReadWaitsForTheFirstByteOnly) {
  ASSERT_NO_FATAL_FAILURE(OpenConfigured({}));
  const ClockFunctions& clock = NativePlatform().clock;
  std::vector<uint8_t> bytes;
  const uint64_t start_ms = clock.tick_ms(nullptr);
  EXPECT_EQ(Read(bytes), 0);
  EXPECT_GE(clock.tick_ms(nullptr) - start_ms, 40U);

  ASSERT_EQ(write(terminal.master, "abc", 3), 3);
  EXPECT_EQ(Read(bytes), 3);
  EXPECT_EQ(Read(bytes), 0);
}

TEST_F(SerialPort, AnUnpluggedPortIsAnErrorAtOnce) {
  ASSERT_NO_FATAL_FAILURE(OpenConfigured({}));
  terminal.Unplug();
  std::vector<uint8_t> bytes;
  EXPECT_EQ(Read(bytes), -1);
  EXPECT_EQ(Read(bytes), -1);
  EXPECT_EQ(Serial().write(nullptr, port, AllBytes().data(), 1), -1);
  EXPECT_EQ(Serial().configure(nullptr, port, {}), SetupStep::kGetState);
}

// The kernel drops what a pseudo-terminal had received when its other end goes, so the port whose
// last bytes outlive it is a pipe here.
TEST(SerialRead, DeliversTheLastBytesBeforeTheEnd) {
  int ends[2] = {-1, -1};
  ASSERT_EQ(pipe2(ends, O_NONBLOCK | O_CLOEXEC), 0);
  ASSERT_EQ(write(ends[1], "last", 4), 4);
  close(ends[1]);
  std::array<uint8_t, 10> bytes{};
  EXPECT_EQ(Serial().read(nullptr, ends[0], bytes.data(), bytes.size()), 4);
  EXPECT_EQ(Serial().read(nullptr, ends[0], bytes.data(), bytes.size()), -1);
  close(ends[0]);
}

TEST_F(SerialPort, WriteGivesUpWhenNobodyReads) {
  ASSERT_NO_FATAL_FAILURE(OpenConfigured({.baud = 115200}));
  const std::vector<uint8_t> block(64, 'x');
  int result = 0;
  for (int i = 0; i < 10000 && result == 0; ++i) {
    result = Serial().write(nullptr, port, block.data(), block.size());
  }
  EXPECT_EQ(result, -1);
  EXPECT_EQ(Serial().write(nullptr, port, block.data(), block.size()), 0)
      << "the port could not be written to after its buffer was emptied";
}

// 100 bytes may take 300 ms at 4800 baud and 200 ms at any other speed.
TEST_F(SerialPort, WriteWaitsAsLongAsTheSpeedNeeds) {
  ASSERT_NO_FATAL_FAILURE(OpenConfigured({.baud = 4800}));
  ASSERT_EQ(tcflow(static_cast<int>(port), TCOOFF), 0);
  const ClockFunctions& clock = NativePlatform().clock;
  const std::vector<uint8_t> block(100, 'x');
  uint64_t start_ms = clock.tick_ms(nullptr);
  EXPECT_EQ(Serial().write(nullptr, port, block.data(), block.size()), -1);
  EXPECT_GE(clock.tick_ms(nullptr) - start_ms, 290U);

  ASSERT_EQ(Serial().configure(nullptr, port, {.baud = 9600}), SetupStep::kNone);
  EXPECT_EQ(Serial().write(nullptr, port, block.data(), block.size()), 0)
      << "configuring did not release the stopped output";
  ASSERT_EQ(tcflow(static_cast<int>(port), TCOOFF), 0);
  start_ms = clock.tick_ms(nullptr);
  EXPECT_EQ(Serial().write(nullptr, port, block.data(), block.size()), -1);
  EXPECT_GE(clock.tick_ms(nullptr) - start_ms, 190U);
}

TEST_F(SerialPort, SettingsReachTheDevice) {
  struct Case {
    SerialSettings settings;
    speed_t speed;
  };
  constexpr Case kCases[] = {{{.baud = 4800, .xon_xoff = false}, B4800},
                             {{.baud = 9600, .xon_xoff = true}, B9600},
                             {{.baud = 38400, .xon_xoff = false}, B38400},
                             {{.baud = 57600, .xon_xoff = true}, B57600},
                             {{.baud = 115200, .xon_xoff = false}, B115200}};
  ASSERT_NO_FATAL_FAILURE(OpenConfigured({}));
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.settings.baud);
    ASSERT_EQ(Serial().configure(nullptr, port, c.settings), SetupStep::kNone);
    termios state{};
    ASSERT_EQ(tcgetattr(terminal.master, &state), 0);  // the state is the pair's
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
  for (const uint32_t baud : {0U, 300U, 19200U, 57601U, 4000000U}) {
    EXPECT_EQ(Serial().configure(nullptr, port, {.baud = baud}), SetupStep::kSetState) << baud;
  }
}

TEST_F(SerialPort, ConfiguringEmptiesBothDirections) {
  ASSERT_NO_FATAL_FAILURE(OpenConfigured({}));
  ASSERT_EQ(write(terminal.master, "old", 3), 3);
  ASSERT_EQ(Serial().write(nullptr, port, AllBytes().data(), 5), 0);
  ASSERT_EQ(Serial().configure(nullptr, port, {}), SetupStep::kNone);
  ASSERT_EQ(write(terminal.master, "new", 3), 3);
  std::vector<uint8_t> bytes;
  ASSERT_EQ(Read(bytes), 3);
  EXPECT_EQ(std::string(bytes.begin(), bytes.end()), "new");
}

TEST_F(SerialPort, IsForOneProgramAlone) {
  ASSERT_NO_FATAL_FAILURE(OpenConfigured({}));
  const PortOpening second = Open(terminal.name);
  EXPECT_EQ(second.handle, kNoSerialHandle);
  EXPECT_EQ(second.problem, PortProblem::kBusy);
  EXPECT_THAT(second.reason, HasSubstr("nother program is using " + terminal.name));
  EXPECT_EQ(InChild([&] { return Open(terminal.name).problem == PortProblem::kBusy ? 0 : 1; }), 0);

  Serial().close(nullptr, port);
  port = Open(terminal.name).handle;
  EXPECT_NE(port, kNoSerialHandle) << "closing did not give the port free";
}

// The exclusive flag stops a program that knows nothing of locks; only root passes it.
TEST_F(SerialPort, KeepsOutProgramsThatDoNotLock) {
  if (geteuid() == 0) {
    ASSERT_EQ(chmod(terminal.name.c_str(), 0666), 0);
  }
  const char* name = terminal.name.c_str();
  const auto open_as_user = [&] {
    if (geteuid() == 0 && seteuid(65534) != 0) return 2;
    return open(name, O_RDWR | O_NOCTTY | O_NONBLOCK) >= 0 ? 1 : 0;
  };
  ASSERT_EQ(InChild(open_as_user), 1) << "the pseudo-terminal was not open to all";
  ASSERT_NO_FATAL_FAILURE(OpenConfigured({}));
  EXPECT_EQ(InChild(open_as_user), 0);
  Serial().close(nullptr, port);
  port = kNoSerialHandle;
  EXPECT_EQ(InChild(open_as_user), 1);
}

TEST(SerialOpen, RefusesWhatIsNoSerialPort) {
  const ScratchFolder folder;
  const std::string file = folder.path + "/file";
  close(open(file.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0666));
  const struct {
    std::string name;
    PortProblem problem;
    std::string reason;
  } cases[] = {
      {folder.path + "/none", PortProblem::kMissing, folder.path + "/none"},
      {file + "/below", PortProblem::kMissing, file},
      {file, PortProblem::kOther, file + " is not a serial port"},
      {folder.path, PortProblem::kOther, folder.path + " is not a serial port"},
      {"/dev/null", PortProblem::kOther, "/dev/null is not a serial port"},
      {"COM7", PortProblem::kMissing, "There is no port 7: --ports lists the ports"},
      {"", PortProblem::kMissing, "There is no port"},
  };
  for (const auto& c : cases) {
    const PortOpening opening = Open(c.name);
    EXPECT_EQ(opening.handle, kNoSerialHandle) << c.name;
    EXPECT_EQ(opening.problem, c.problem) << c.name;
    EXPECT_THAT(opening.reason, HasSubstr(c.reason));
  }
}

// Writes the reason for which a user without privileges cannot open the port.
std::string ReasonForUser(const std::string& name, PortProblem& problem) {
  int ends[2] = {-1, -1};
  if (pipe2(ends, O_CLOEXEC) != 0) return {};
  const int result = InChild([&] {
    if (seteuid(65534) != 0) return 255;
    const PortOpening opening = Open(name);
    const ssize_t written = write(ends[1], opening.reason.data(), opening.reason.size());
    return written < 0 ? 255 : static_cast<int>(opening.problem);
  });
  close(ends[1]);
  std::array<char, 500> reason{};
  const ssize_t count = read(ends[0], reason.data(), reason.size());
  close(ends[0]);
  problem = static_cast<PortProblem>(result);
  return {reason.data(), static_cast<size_t>(count > 0 ? count : 0)};
}

TEST_F(SerialPort, SaysHowToGetPermission) {
  if (geteuid() != 0) GTEST_SKIP() << "only root can hand a device to another group";
  const struct {
    mode_t mode;
    gid_t group;
    std::string reason;
  } cases[] = {
      {0660, 54321,
       "No permission for " + terminal.name +
           ": add yourself to the group \"54321\" that owns the port (sudo usermod -aG 54321 "
           "$USER), then log in again"},
      {0660, 1, "the group \"daemon\" that owns the port (sudo usermod -aG daemon $USER)"},
      {0620, 1, "only its owner may use the port"},
  };
  for (const auto& c : cases) {
    ASSERT_EQ(chown(terminal.name.c_str(), 0, c.group), 0);
    ASSERT_EQ(chmod(terminal.name.c_str(), c.mode), 0);
    PortProblem problem = PortProblem::kNone;
    EXPECT_THAT(ReasonForUser(terminal.name, problem), HasSubstr(c.reason));
    EXPECT_EQ(problem, PortProblem::kDenied);
  }
}

TEST(SerialNames, OnlyPathsAreNames) {
  EXPECT_TRUE(IsPortName("/dev/ttyUSB0"));
  for (const char* text : {"", "1", "50", "COM1", "dev/ttyUSB0", " /dev/ttyUSB0"}) {
    EXPECT_FALSE(IsPortName(text)) << text;
  }
}

}  // namespace
}  // namespace skyhaul
