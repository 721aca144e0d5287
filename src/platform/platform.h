#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace skyhaul {

// Everything that the program asks of the operating system while it talks to an instrument, as
// records of functions. NativePlatform() gives the real one; tests hand in another with virtual
// time. Each function gets the context of its own record as its first argument.

// --- Serial ports --------------------------------------------------------------------------------

using SerialHandle = intptr_t;
inline constexpr SerialHandle kNoSerialHandle = -1;

inline constexpr uint32_t kReadWait_ms = 50;  // how long a read waits for the first byte
inline constexpr size_t kMaxPorts = 50;

// Why a port could not be opened.
enum class PortProblem { kNone, kMissing, kBusy, kDenied, kOther };

struct PortOpening {
  SerialHandle handle = kNoSerialHandle;
  PortProblem problem = PortProblem::kNone;
  std::string reason;  // one sentence for the person, e.g. who holds the port; empty on success
};

// 8 data bits, no parity, one stop bit, DTR and RTS held on. With xon_xoff, XON (0x11) and XOFF
// (0x13) steer both directions, at limits of 100 bytes where the system lets them be chosen; the
// driver may then keep those two bytes to itself. Speeds are 4800, 9600, 38400, 57600 and 115200.
struct SerialSettings {
  uint32_t baud = 57600;
  bool xon_xoff = false;
};

// The step of configuring a port that failed, in the order they are taken.
enum class SetupStep { kNone, kGetState, kSetTimeouts, kSetState, kPurge };

struct PortInfo {
  uint32_t number = 0;      // 1..50, what the command line calls it
  std::string name;         // what open() takes
  std::string description;  // what is behind it, e.g. a USB adapter's product name; may be empty
};

struct SerialFunctions {
  void* context = nullptr;

  // Opens a port for this program alone. It can be read and written once it is configured.
  PortOpening (*open)(void* context, const std::string& name) = nullptr;
  // Applies the settings and empties both directions. Returns the step that failed, or kNone.
  SetupStep (*configure)(void* context, SerialHandle port,
                         const SerialSettings& settings) = nullptr;
  // Returns the number of bytes read as soon as there are any, 0 after kReadWait_ms without one,
  // and -1 when the port is in error or gone.
  int (*read)(void* context, SerialHandle port, uint8_t* buffer, size_t capacity) = nullptr;
  // Hands all bytes to the port's driver within 3 ms per byte at 4800 baud and 2 ms per byte at any
  // other speed. Returns 0, or -1 on time-out or error, whose state is then cleared.
  int (*write)(void* context, SerialHandle port, const uint8_t* bytes, size_t count) = nullptr;
  void (*close)(void* context, SerialHandle port) = nullptr;

  // The ports with hardware behind them, at most kMaxPorts, the likeliest first and numbered
  // from 1. Returns 0, or -1 when the system's list cannot be read.
  int (*list)(void* context, std::vector<PortInfo>& ports) = nullptr;
  // The name of port n; one that the list does not have gets a name that no port answers to.
  std::string (*name_of)(void* context, uint32_t number) = nullptr;
};

// --- Time ----------------------------------------------------------------------------------------

struct ClockFunctions {
  void* context = nullptr;

  uint64_t (*tick_ms)(void* context) = nullptr;  // monotonic
  void (*wait)(void* context, uint32_t ms) = nullptr;
  int64_t (*unix_time_s)(void* context) = nullptr;  // seconds since 1970-01-01 00:00:00 UTC
};

// --- Threads -------------------------------------------------------------------------------------

using ThreadHandle = uintptr_t;

struct ThreadFunctions {
  void* context = nullptr;

  // Runs a function on a thread of its own. Returns 0, or -1 when the system has no thread to give.
  // Every started thread must be joined.
  int (*start)(void* context, void (*run)(void* argument), void* argument,
               ThreadHandle* thread) = nullptr;
  void (*join)(void* context, ThreadHandle thread) = nullptr;
};

// --- Clients -------------------------------------------------------------------------------------

struct NotifierFunctions {
  void* context = nullptr;

  // Sends one text to the client of that name. Returns 0, or -1 when there is no such client or it
  // did not take the text within one second.
  int (*send)(void* context, const std::string& client, const std::string& text) = nullptr;
};

struct Platform {
  SerialFunctions serial;
  ClockFunctions clock;
  ThreadFunctions thread;
  NotifierFunctions notifier;
};

// The operating system's own. All its functions may be called from any thread; one port belongs to
// one thread at a time.
const Platform& NativePlatform();

// True when a text that names a port on the command line is a device's own name and not a number.
bool IsPortName(const std::string& text);

}  // namespace skyhaul
