#include "platform/posix/serial.h"

#include <fcntl.h>
#include <grp.h>
#include <linux/serial.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <string>
#include <vector>

#include "platform/posix/clock.h"
#include "platform/posix/descriptor.h"
#include "platform/posix/lock_file.h"
#include "platform/posix/port_list.h"
#include "platform/posix/port_users.h"
#include "platform/posix/system_reason.h"

namespace skyhaul {

namespace {

constexpr const char* kSysfsRoot = "/sys";
constexpr const char* kDevRoot = "/dev";
constexpr const char* kProcRoot = "/proc";

constexpr cc_t kXonCharacter = 0x11;
constexpr cc_t kXoffCharacter = 0x13;
constexpr size_t kMaxRead = 1U << 20;    // the count that is returned has to fit an int
constexpr uint32_t kCloseWait_ms = 500;  // 240 bytes at 4800 baud, more than any last request
constexpr uint32_t kCloseSlice_ms = 5;

struct LineSpeed {
  uint32_t baud;
  speed_t code;
  uint32_t write_ms_per_byte;
};

constexpr LineSpeed kLineSpeeds[] = {
    {.baud = 4800, .code = B4800, .write_ms_per_byte = 3},
    {.baud = 9600, .code = B9600, .write_ms_per_byte = 2},
    {.baud = 38400, .code = B38400, .write_ms_per_byte = 2},
    {.baud = 57600, .code = B57600, .write_ms_per_byte = 2},
    {.baud = 115200, .code = B115200, .write_ms_per_byte = 2},
};

// --- Opening ------------------------------------------------------------------------------------

PortOpening Refuse(PortProblem problem, const std::string& reason) {
  return {.handle = kNoSerialHandle, .problem = problem, .reason = reason};
}

PortOpening RefuseOther(const std::string& name) {
  return Refuse(PortProblem::kOther, name + " is not a serial port");
}

std::string GroupName(gid_t id) {
  group entry{};
  group* found = nullptr;
  std::vector<char> buffer(16384);  // a group's entry also names all its members
  const int error = getgrgid_r(id, &entry, buffer.data(), buffer.size(), &found);
  return error == 0 && found != nullptr ? found->gr_name : std::to_string(id);
}

std::string ReasonDenied(const std::string& name) {
  std::string reason = "No permission for " + name;
  struct stat status {};
  if (stat(name.c_str(), &status) != 0) return reason;
  constexpr mode_t kGroupMayUse = S_IRGRP | S_IWGRP;
  if ((status.st_mode & kGroupMayUse) != kGroupMayUse) {
    return reason + ": only its owner may use the port";
  }
  const std::string group = GroupName(status.st_gid);
  return reason + ": add yourself to the group \"" + group +
         "\" that owns the port (sudo usermod -aG " + group + " $USER), then log in again";
}

PortOpening RefuseForError(const std::string& name, int error) {
  switch (error) {
    case ENOENT:
    case ENOTDIR:
    case ENXIO:  // the device file is there, and its hardware is not
    case ENODEV:
      return Refuse(PortProblem::kMissing, "There is no port " + name);
    case EACCES:
    case EPERM:
      return Refuse(PortProblem::kDenied, ReasonDenied(name));
    case EBUSY:        // another program has set TIOCEXCL
    case EWOULDBLOCK:  // flock's word for a lock that another holds
      return Refuse(PortProblem::kBusy, "Another program is using " + name);
    default:
      return Refuse(PortProblem::kOther, name + ": " + SystemReason(error));
  }
}

// A name that PortName() made up for a number without a port. It must not be looked for in the
// current folder.
PortOpening RefuseNumber(const std::string& name) {
  const std::string number = name.starts_with("COM") ? name.substr(3) : name;
  return Refuse(PortProblem::kMissing, "There is no port " + number + ": --ports lists the ports");
}

PortOpening RefuseHeld(const std::string& name, const std::string& holder) {
  return Refuse(PortProblem::kBusy, "Another program is using " + name + ": " + holder);
}

// The locks that the kernel keeps: the first keeps out programs that lock too, the second all but
// the superuser's. The lock file lies between them, because the second outlives us on a port that
// is refused and that another program has open. Returns why the port is refused.
PortOpening Claim(int port, const std::string& name, const std::string& lock) {
  if (flock(port, LOCK_EX | LOCK_NB) != 0) return RefuseForError(name, errno);
  const std::string holder = TakePortLock(lock, port);
  if (!holder.empty()) return RefuseHeld(name, holder);
  if (ioctl(port, TIOCEXCL) == 0) return {};
  const int error = errno;
  ReleasePortLock(port);
  return RefuseForError(name, error);
}

const PortSharing& SharingOf(const void* context) {
  static const PortSharing standard;
  return context == nullptr ? standard : *static_cast<const PortSharing*>(context);
}

PortOpening Open(void* context, const std::string& name) {
  if (!IsPortName(name)) return RefuseNumber(name);
  struct stat status {};
  // Looked at before it is opened: opening alone has effects on some devices, and waits on a pipe.
  if (stat(name.c_str(), &status) != 0) return RefuseForError(name, errno);
  if (!S_ISCHR(status.st_mode)) return RefuseOther(name);
  const std::string device = DeviceOfPort(name);
  const std::string lock = PortLockPath(SharingOf(context), device);
  const std::string holder = PortLockHolder(lock);
  if (!holder.empty()) return RefuseHeld(name, holder);
  // Without O_NONBLOCK, opening waits for a carrier that no instrument gives. Without O_NOCTTY, an
  // adapter that is pulled out could end the program with a hang-up signal.
  Descriptor port(open(name.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC));
  if (port.fd < 0) return RefuseForError(name, errno);
  if (isatty(port.fd) == 0) return RefuseOther(name);
  PortOpening opened = Claim(port.fd, name, lock);
  if (opened.problem != PortProblem::kNone) return opened;
  opened.handle = port.Release();
  const std::string users = OtherPortUsers(kProcRoot, device);
  if (!users.empty()) opened.warning = "Other programs have this port open: " + users;
  return opened;
}

// --- Settings -----------------------------------------------------------------------------------

const LineSpeed* FindSpeed(uint32_t baud) {
  const auto* const found =
      std::find_if(std::begin(kLineSpeeds), std::end(kLineSpeeds),
                   [&](const LineSpeed& speed) { return speed.baud == baud; });
  return found == std::end(kLineSpeeds) ? nullptr : found;
}

constexpr tcflag_t kControlBits = CSIZE | CSTOPB | PARENB | CRTSCTS | CLOCAL | CREAD;
constexpr tcflag_t kControlWanted = CS8 | CLOCAL | CREAD;

// Bytes pass unchanged in both directions: no line ends are converted, nothing is echoed, and no
// byte means "interrupt". One byte is the least that a read gives (VMIN): with 0 a port without
// data would read like one that is gone. IXANY stays off, or any byte of an answer would undo an
// XOFF.
void MakeRaw(termios& state, bool xon_xoff) {
  state.c_iflag = xon_xoff ? IXON | IXOFF : 0;
  state.c_oflag &= ~static_cast<tcflag_t>(OPOST);
  state.c_lflag &= ~static_cast<tcflag_t>(ECHO | ECHONL | ICANON | ISIG | IEXTEN);
  state.c_cflag = (state.c_cflag & ~kControlBits) | kControlWanted;
  state.c_cc[VSTART] = kXonCharacter;
  state.c_cc[VSTOP] = kXoffCharacter;
  state.c_cc[VMIN] = 1;
  state.c_cc[VTIME] = 0;
}

// tcsetattr() succeeds when it could apply any part of the state, so the port is asked what it
// took. An adapter that lacks a speed otherwise goes on with the one before.
bool Took(int fd, const termios& wanted) {
  termios state{};
  if (tcgetattr(fd, &state) != 0) return false;
  return cfgetospeed(&state) == cfgetospeed(&wanted) &&
         cfgetispeed(&state) == cfgetispeed(&wanted) && state.c_iflag == wanted.c_iflag &&
         (state.c_cflag & kControlBits) == kControlWanted;
}

// DTR and RTS also feed the level converters of some cables. Pseudo-terminals and some adapters
// have no modem lines, which is no reason to refuse them.
bool HoldModemLines(int fd) {
  const int lines = TIOCM_DTR | TIOCM_RTS;
  return ioctl(fd, TIOCMBIS, &lines) == 0 || errno == ENOTTY || errno == EINVAL;
}

SetupStep Configure(void*, SerialHandle port, const SerialSettings& settings) {
  const int fd = static_cast<int>(port);
  termios state{};
  if (tcgetattr(fd, &state) != 0) return SetupStep::kGetState;
  const LineSpeed* const speed = FindSpeed(settings.baud);
  if (speed == nullptr) return SetupStep::kSetState;
  MakeRaw(state, settings.xon_xoff);
  cfsetispeed(&state, speed->code);
  cfsetospeed(&state, speed->code);
  // TCSANOW does not wait for output to leave, which an XOFF may have stopped.
  if (tcsetattr(fd, TCSANOW, &state) != 0 || !Took(fd, state) || !HoldModemLines(fd)) {
    return SetupStep::kSetState;
  }
  // A stop by tcflow() from before would hold the output back for ever. Emptying comes last: what
  // arrived until now was taken in with the speed before.
  if (tcflow(fd, TCOON) != 0 || tcflush(fd, TCIOFLUSH) != 0) return SetupStep::kPurge;
  return SetupStep::kNone;
}

// --- Bytes --------------------------------------------------------------------------------------

bool MayRetry(int error) {
  return error == EAGAIN || error == EWOULDBLOCK || error == EINTR;
}

// tcflow() undoes only its own stop. An XOFF that was received is forgotten when flow control is
// switched off for a moment, by the adapters that keep it themselves too.
void FreeOutput(void*, SerialHandle port) {
  const int fd = static_cast<int>(port);
  termios state{};
  if (tcgetattr(fd, &state) != 0 || (state.c_iflag & IXON) == 0) return;
  termios without = state;
  without.c_iflag &= ~static_cast<tcflag_t>(IXON);
  (void)tcsetattr(fd, TCSANOW, &without);
  (void)tcsetattr(fd, TCSANOW, &state);
}

// Pseudo-terminals and some adapters do not count.
uint32_t Losses(void*, SerialHandle port) {
  serial_icounter_struct counts{};
  if (ioctl(static_cast<int>(port), TIOCGICOUNT, &counts) != 0) return 0;
  return static_cast<uint32_t>(counts.overrun) + static_cast<uint32_t>(counts.buf_overrun) +
         static_cast<uint32_t>(counts.frame);
}

// Reading comes before waiting, so what an unplugged port had received is delivered before its end.
int Read(void*, SerialHandle port, uint8_t* buffer, size_t capacity) {
  const int fd = static_cast<int>(port);
  const uint64_t end_ms = MonotonicMilliseconds() + kReadWait_ms;
  for (;;) {
    const ssize_t count = read(fd, buffer, std::min(capacity, kMaxRead));
    if (count > 0) return static_cast<int>(count);
    if (count == 0 || !MayRetry(errno)) return -1;
    const uint64_t now_ms = MonotonicMilliseconds();
    if (now_ms >= end_ms) return 0;
    pollfd wanted{.fd = fd, .events = POLLIN, .revents = 0};
    const int ready = poll(&wanted, 1, static_cast<int>(end_ms - now_ms));
    // Ready without data is a hang-up: the adapter was pulled out.
    if (ready > 0 && (wanted.revents & POLLIN) == 0) return -1;
  }
}

// The time that a write may take, by the speed that the port has.
uint64_t WritePatience(int fd, size_t count) {
  termios state{};
  const bool known = tcgetattr(fd, &state) == 0;
  const speed_t code = known ? cfgetospeed(&state) : B0;
  const auto* const speed = std::find_if(std::begin(kLineSpeeds), std::end(kLineSpeeds),
                                         [&](const LineSpeed& s) { return s.code == code; });
  const uint32_t ms_per_byte = speed == std::end(kLineSpeeds) ? 2 : speed->write_ms_per_byte;
  return static_cast<uint64_t>(count) * ms_per_byte;
}

// Each round takes the time first and then tries: however late the process gets the processor, the
// port was asked once more after the time was up.
int WriteWithin(int fd, const uint8_t* bytes, size_t count, uint64_t end_ms) {
  while (count > 0) {
    const uint64_t now_ms = MonotonicMilliseconds();
    const ssize_t written = write(fd, bytes, count);
    if (written > 0) {
      bytes += written;
      count -= static_cast<size_t>(written);
      continue;
    }
    if (written < 0 && !MayRetry(errno)) return -1;
    if (now_ms >= end_ms) return -1;
    pollfd wanted{.fd = fd, .events = POLLOUT, .revents = 0};
    poll(&wanted, 1, static_cast<int>(end_ms - now_ms));
    if ((wanted.revents & (POLLHUP | POLLERR | POLLNVAL)) != 0) return -1;
  }
  return 0;
}

int Write(void*, SerialHandle port, const uint8_t* bytes, size_t count) {
  const int fd = static_cast<int>(port);
  const uint64_t end_ms = MonotonicMilliseconds() + WritePatience(fd, count);
  if (WriteWithin(fd, bytes, count, end_ms) == 0) return 0;
  // Else the rest of this request would leave later, in the middle of the next.
  tcflush(fd, TCOFLUSH);
  return -1;
}

// --- The end ------------------------------------------------------------------------------------

// When the other side has stopped the output, the kernel makes a closing program wait for it for up
// to 30 s. The last request gets its time, and what is still there then is thrown away. The queue
// is polled because tcdrain() has no time limit.
void LetOutputLeave(int fd) {
  const ClockFunctions clock = PosixClock();
  const uint64_t end_ms = MonotonicMilliseconds() + kCloseWait_ms;
  int waiting = 0;
  while (ioctl(fd, TIOCOUTQ, &waiting) == 0 && waiting > 0) {
    if (MonotonicMilliseconds() >= end_ms) {
      tcflush(fd, TCOFLUSH);
      return;
    }
    clock.wait(clock.context, kCloseSlice_ms);
  }
}

// All locks are released before the descriptor is closed: a child process may have a copy of it,
// and a lock lasts as long as any copy.
void Close(void*, SerialHandle port) {
  const Descriptor owned(static_cast<int>(port));
  LetOutputLeave(owned.fd);
  ioctl(owned.fd, TIOCNXCL);
  ReleasePortLock(owned.fd);
  flock(owned.fd, LOCK_UN);
}

int List(void*, std::vector<PortInfo>& ports) {
  return ListPorts(kSysfsRoot, kDevRoot, ports);
}

std::string NameOf(void*, uint32_t number) {
  return PortName(kSysfsRoot, kDevRoot, number);
}

}  // namespace

SerialFunctions PosixSerial() {
  return {.open = Open,
          .configure = Configure,
          .read = Read,
          .write = Write,
          .close = Close,
          .free_output = FreeOutput,
          .losses = Losses,
          .list = List,
          .name_of = NameOf};
}

}  // namespace skyhaul
