#include "platform/posix/serial.h"

#include <linux/serial.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/ioctl.h>
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
#include "platform/posix/open_port.h"
#include "platform/posix/port_list.h"

namespace skyhaul {

namespace {

constexpr const char* kSysfsRoot = "/sys";
constexpr const char* kDevRoot = "/dev";

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
  return {.open = OpenPosixPort,
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
