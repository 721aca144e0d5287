#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>

#include "instruments/pty_host.h"

namespace skyhaul {

namespace {

constexpr int kIdle_ms = 20;
constexpr uint64_t kMillisecond_ns = 1'000'000;

std::atomic<bool> g_stop_signal = false;
static_assert(std::atomic<bool>::is_always_lock_free, "set from a signal handler");

void OnStopSignal(int) {
  g_stop_signal = true;
}

std::string Reason() {
  return std::strerror(errno);
}

uint64_t SteadyClock_ns() {
  const auto since_start = std::chrono::steady_clock::now().time_since_epoch();
  return static_cast<uint64_t>(
      std::chrono::duration_cast<std::chrono::nanoseconds>(since_start).count());
}

struct Terminal {
  int master = -1;
  std::string path;
  bool in_use = false;  // some program has it open

  ~Terminal() {
    if (master >= 0) ::close(master);
  }
};

// Opens the program's side for a moment: raw, nothing queued, nothing stopped. Closing it again is
// what makes the system report on our side that nobody has it open.
int ResetTerminal(const Terminal& terminal) {
  const int slave = ::open(terminal.path.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC | O_NONBLOCK);
  if (slave < 0) return -1;
  termios settings = {};
  int result = ::tcgetattr(slave, &settings);
  if (result == 0) {
    ::cfmakeraw(&settings);
    settings.c_iflag &= ~static_cast<tcflag_t>(IXOFF);
    settings.c_cc[VMIN] = 1;
    settings.c_cc[VTIME] = 0;
    result = ::tcsetattr(slave, TCSANOW, &settings);
  }
  (void)::tcflush(slave, TCIOFLUSH);
  ::close(slave);
  return result;
}

int OpenTerminal(Terminal& terminal) {
  if (terminal.master >= 0) ::close(terminal.master);
  terminal.master = ::posix_openpt(O_RDWR | O_NOCTTY);
  if (terminal.master < 0) return -1;
  if (::fcntl(terminal.master, F_SETFD, FD_CLOEXEC) < 0) return -1;
  if (::fcntl(terminal.master, F_SETFL, O_NONBLOCK) < 0) return -1;
  if (::grantpt(terminal.master) < 0 || ::unlockpt(terminal.master) < 0) return -1;
  const char* path = ::ptsname(terminal.master);
  if (path == nullptr) return -1;
  terminal.path = path;
  return ResetTerminal(terminal);
}

// --- The link ------------------------------------------------------------------------------------

// Where a symbolic link points to; empty when it is none.
std::string LinkTarget(const std::string& link) {
  std::array<char, 256> target;
  const ssize_t length = ::readlink(link.c_str(), target.data(), target.size());
  return length < 0 ? "" : std::string(target.data(), static_cast<size_t>(length));
}

int MakeLink(const std::string& link, const std::string& target, std::string& problem) {
  struct stat status = {};
  if (::lstat(link.c_str(), &status) == 0) {
    if (!S_ISLNK(status.st_mode)) {
      problem = link + " exists and is not a symbolic link";
      return -1;
    }
    if (::stat(link.c_str(), &status) == 0 && LinkTarget(link) != target) {
      problem = link + " leads to " + LinkTarget(link) + ", which is in use";
      return -1;
    }
    (void)::unlink(link.c_str());
  }
  if (::symlink(target.c_str(), link.c_str()) == 0) return 0;
  problem = "Could not make the link " + link + ": " + Reason();
  return -1;
}

void RemoveLink(const std::string& link, const std::string& target) {
  if (LinkTarget(link) == target) (void)::unlink(link.c_str());
}

int PutUp(Terminal& terminal, const TerminalOptions& options, std::string& problem) {
  if (OpenTerminal(terminal) < 0) {
    problem = "Could not open a pseudo-terminal: " + Reason();
    return -1;
  }
  const std::string& link = options.link_path;
  if (!link.empty() && MakeLink(link, terminal.path, problem) < 0) return -1;
  if (options.on_ready != nullptr) options.on_ready(options.context, terminal.path);
  return 0;
}

// --- The conversation ----------------------------------------------------------------------------

struct Conversation {
  SimulatedInstrument& instrument;
  Terminal& terminal;
  ConversationLog* log;
  uint64_t start_ns;
  std::string leaving = {};  // taken from the wire, not yet by the terminal
  size_t lost = 0;           // bytes that left since the terminal was closed
};

uint64_t Now_ns(const Conversation& talk) {
  return SteadyClock_ns() - talk.start_ns;
}

void Note(const Conversation& talk, Speaker speaker, std::string_view bytes, uint64_t now_ns) {
  if (talk.log != nullptr) LogBytes(*talk.log, speaker, bytes, now_ns);
}

// The program has closed the terminal. Returns false when the terminal is of no more use.
bool HangUp(Conversation& talk) {
  TellClosed(talk.instrument);
  talk.leaving.clear();
  talk.lost = 0;
  return ResetTerminal(talk.terminal) == 0;
}

// What leaves while nobody has the terminal open reaches nobody.
void Lose(Conversation& talk) {
  talk.lost += LoseArrived(talk.instrument.wire, Now_ns(talk));
}

void PickUp(const Conversation& talk) {
  if (talk.log == nullptr || talk.lost == 0) return;
  LogRemark(*talk.log, std::to_string(talk.lost) + " bytes left while the port was closed",
            Now_ns(talk));
}

// Reads all that there is. Returns false when nobody has the terminal open.
bool TakeFromHost(Conversation& talk) {
  std::array<uint8_t, 512> buffer;
  for (;;) {
    const ssize_t count = ::read(talk.terminal.master, buffer.data(), buffer.size());
    if (count == 0 || (count < 0 && errno == EIO)) return false;
    if (count < 0) return true;  // nothing now, or interrupted
    const uint64_t now_ns = Now_ns(talk);
    const auto length = static_cast<size_t>(count);
    Note(talk, Speaker::kHost, {reinterpret_cast<const char*>(buffer.data()), length}, now_ns);
    SimulatedInstrument& instrument = talk.instrument;
    for (size_t i = 0; i < length; ++i) {
      instrument.receive(instrument.state, instrument.wire, buffer[i], now_ns);
    }
  }
}

// Gives the terminal what has arrived by now and as much as it takes of it. What it does not take
// waits here: the simulated line has no memory, so nothing more is taken from the wire meanwhile.
void GiveToHost(Conversation& talk) {
  Wire& wire = talk.instrument.wire;
  if (!talk.leaving.empty()) wire.free_at_ns = std::max(wire.free_at_ns, Now_ns(talk));
  for (;;) {
    const uint64_t now_ns = Now_ns(talk);
    if (talk.leaving.empty()) {
      std::array<uint8_t, 256> buffer;
      const size_t count = TakeArrived(wire, now_ns, buffer.data(), buffer.size());
      if (count == 0) return;
      talk.leaving.assign(reinterpret_cast<const char*>(buffer.data()), count);
    }
    const ssize_t written = ::write(talk.terminal.master, talk.leaving.data(), talk.leaving.size());
    if (written <= 0) return;
    const auto length = static_cast<size_t>(written);
    Note(talk, Speaker::kInstrument, std::string_view(talk.leaving).substr(0, length), now_ns);
    talk.leaving.erase(0, length);
    if (!talk.leaving.empty()) return;
    // The host may have sent XOFF in the meantime; look before the next piece.
    if (!TakeFromHost(talk)) return;
  }
}

int WaitTime_ms(const Conversation& talk) {
  if (!talk.leaving.empty()) return kIdle_ms;
  const uint64_t next_ns = NextArrival_ns(talk.instrument.wire);
  const uint64_t now_ns = Now_ns(talk);
  if (next_ns <= now_ns) return 0;
  const uint64_t wait_ms = (next_ns - now_ns) / kMillisecond_ns + 1;
  return static_cast<int>(std::min<uint64_t>(wait_ms, kIdle_ms));
}

// Waits until there is something to do, and does it. POLLHUP is there for as long as nobody has the
// terminal open and does not let poll() wait, hence the plain sleep. Returns false when the
// terminal is of no more use: a program that was killed while it had it for itself leaves it
// locked.
bool Converse(Conversation& talk) {
  pollfd events = {.fd = talk.terminal.master, .events = POLLIN, .revents = 0};
  if (!talk.leaving.empty()) events.events |= POLLOUT;
  (void)::poll(&events, 1, talk.terminal.in_use ? WaitTime_ms(talk) : 0);
  const bool was_in_use = talk.terminal.in_use;
  talk.terminal.in_use = TakeFromHost(talk);
  if (talk.terminal.in_use) {
    if (!was_in_use) PickUp(talk);
    GiveToHost(talk);
  } else if (was_in_use) {
    if (!HangUp(talk)) return false;
  } else {
    Lose(talk);
    (void)::poll(nullptr, 0, kIdle_ms);
  }
  if (talk.log != nullptr) FlushLog(*talk.log, Now_ns(talk));
  return true;
}

}  // namespace

const std::atomic<bool>& StopOnSignals() {
  (void)std::signal(SIGINT, OnStopSignal);
  (void)std::signal(SIGTERM, OnStopSignal);
  (void)std::signal(SIGHUP, OnStopSignal);
  (void)std::signal(SIGPIPE, SIG_IGN);  // whoever read our first line need not stay
  (void)std::signal(SIGXFSZ, SIG_IGN);  // a log that reached a limit does not end the flight
  return g_stop_signal;
}

int RunOnTerminal(SimulatedInstrument& instrument, const TerminalOptions& options,
                  std::string& problem) {
  Terminal terminal;
  if (PutUp(terminal, options, problem) < 0) return -1;
  Conversation talk{.instrument = instrument,
                    .terminal = terminal,
                    .log = options.log,
                    .start_ns = SteadyClock_ns()};
  int result = 0;
  while (result == 0 && !options.stop->load()) {
    if (!Converse(talk)) result = PutUp(terminal, options, problem);
  }
  if (options.log != nullptr) FlushLog(*options.log, kNever_ns);
  if (!options.link_path.empty()) RemoveLink(options.link_path, terminal.path);
  return result;
}

}  // namespace skyhaul
