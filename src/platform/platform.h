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

inline constexpr uint32_t kReadWait_ms = 50;  // how long a read waits
inline constexpr size_t kMaxPorts = 50;

// Why a port could not be opened.
// kNoisy: it opened, and what is on it does not stop sending.
enum class PortProblem { kNone, kMissing, kBusy, kDenied, kNoisy, kOther };

struct PortOpening {
  SerialHandle handle = kNoSerialHandle;
  PortProblem problem = PortProblem::kNone;
  std::string reason;  // one sentence for the person, e.g. who holds the port; empty on success
  std::string warning = {};  // one sentence for the person about a port that was opened, or empty
};

// 8 data bits, no parity, one stop bit, DTR and RTS held on. With xon_xoff, XON (0x11) and XOFF
// (0x13) steer both directions, at limits of 100 bytes where the system lets them be chosen; the
// driver may then keep those two bytes to itself. Speeds are 4800, 9600, 38400, 57600 and 115200.
struct SerialSettings {
  uint32_t baud = 57600;
  bool xon_xoff = false;
};

// The step at which configuring a port failed, in the order of the steps. What a system sets up
// once for an open port counts as its state.
enum class SetupStep { kNone, kGetState, kSetTimeouts, kSetState, kPurge };

struct PortInfo {
  uint32_t number = 0;  // from 1, what the command line calls it
  std::string name;     // what open() takes
  std::string
      description;  // what is connected to it, e.g. a USB adapter's product name; may be empty
};

struct SerialFunctions {
  void* context = nullptr;

  // Opens a port for this program alone. It can be read and written once it is configured.
  PortOpening (*open)(void* context, const std::string& name) = nullptr;
  // Applies the settings and empties both directions. Returns the step that failed, or kNone.
  SetupStep (*configure)(void* context, SerialHandle port,
                         const SerialSettings& settings) = nullptr;
  // Returns the number of bytes read, 0 when none came for kReadWait_ms, and -1 when the port is in
  // error or gone. Linux returns as soon as there are any; Windows waits for the buffer to fill,
  // but never longer than kReadWait_ms.
  int (*read)(void* context, SerialHandle port, uint8_t* buffer, size_t capacity) = nullptr;
  // Hands all bytes to the port's driver within 3 ms per byte at 4800 baud and 2 ms per byte at any
  // other speed. Returns 0, or -1 on time-out or error, whose state is then cleared.
  int (*write)(void* context, SerialHandle port, const uint8_t* bytes, size_t count) = nullptr;
  void (*close)(void* context, SerialHandle port) = nullptr;
  // Lets output leave that the other side's XOFF has stopped: the XON that should have freed it may
  // have been lost. Does nothing where nothing is stopped.
  void (*free_output)(void* context, SerialHandle port) = nullptr;
  // How often the system has seen incoming bytes lost or damaged (overruns, framing errors) since
  // some time in the past; only a difference means anything. 0 where the port does not count.
  uint32_t (*losses)(void* context, SerialHandle port) = nullptr;

  // The ports that have hardware, at most kMaxPorts: on Linux the likeliest first and
  // numbered from 1, on Windows in the registry's order with the numbers of their COM names.
  // Returns 0, or -1 when the system's list cannot be read.
  int (*list)(void* context, std::vector<PortInfo>& ports) = nullptr;
  // The name of port n; for a number that is not in the list, a name that no port has.
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

// --- Settings ------------------------------------------------------------------------------------

using RegistryHandle = void*;
inline constexpr RegistryHandle kNoRegistryHandle = nullptr;

// How a value is kept. The numbers are those of the Windows registry's value types.
enum class ValueKind : uint32_t { kText = 1, kBinary = 3, kNumber = 4 };

// kUser: the program's own key, created when it does not exist. kUserReadOnly: the same, never
// created. kTemplate: what the computer's owner has prepared for users who have no settings yet.
enum class RegistryKey { kUser, kUserReadOnly, kTemplate };

struct RegistryOpening {
  RegistryHandle handle = kNoRegistryHandle;
  // Nothing was stored there before. Two programs that start at the same time may both get this, so
  // defaults are written with IfSet::kKeep.
  bool created = false;
  bool missing = false;  // there is no such key, which is no error
  std::string reason;    // the system's own words; empty when opened or missing
};

// The result of a query: a value; no such value; one of another kind, or larger than asked for.
enum class QueryResult { kFound, kMissing, kUnfit };

enum class IfSet { kReplace, kKeep };

// Values with names, each of a kind: numbers are 4 bytes in the machine's order, texts 8-bit
// without a terminating zero. Where the values live in a file, set() may leave the writing to
// flush().
struct RegistryFunctions {
  void* context = nullptr;

  RegistryOpening (*open)(void* context, RegistryKey which) = nullptr;
  // Reads one value of at most capacity bytes into bytes; that of a text ends before its first
  // zero. bytes is untouched unless the value is found.
  QueryResult (*query)(void* context, RegistryHandle key, const std::string& name, ValueKind kind,
                       size_t capacity, std::string& bytes) = nullptr;
  // Writes one value; with kKeep only when there is none. Returns 0, or -1 with the system's words.
  int (*set)(void* context, RegistryHandle key, const std::string& name, ValueKind kind,
             const std::string& bytes, IfSet if_set, std::string& reason) = nullptr;
  // Writes everything that was set. Returns 0, or -1 with the system's words; then the stored
  // values are as they were before.
  int (*flush)(void* context, RegistryHandle key, std::string& reason) = nullptr;
  // Returns the notes for the person since the last call: one sentence for each line that could not
  // be understood when the key was opened or queried.
  std::vector<std::string> (*take_notes)(void* context, RegistryHandle key) = nullptr;
  // Forgets what was set and not flushed.
  void (*close)(void* context, RegistryHandle key) = nullptr;

  // Where the user's settings are stored, as a text for a person.
  std::string (*place)(void* context) = nullptr;
  // The folder that a new user's files go to.
  std::string (*documents_folder)(void* context) = nullptr;
};

// --- Secrets -------------------------------------------------------------------------------------

enum class SecretResult { kDone, kMissing, kNoService, kFailed };

// Passwords, kept so that only this user's programs can read them. A secret has a name and an id,
// printable texts of the caller's choice; several ids of one name are several secrets. reason is
// the system's own words when the result is kFailed; kNoService means that this system has no place
// for secrets at all.
struct SecretFunctions {
  void* context = nullptr;

  // Stores a secret in place of the one with that name and id.
  SecretResult (*store)(void* context, const std::string& name, const std::string& id,
                        const std::string& secret, std::string& reason) = nullptr;
  SecretResult (*load)(void* context, const std::string& name, const std::string& id,
                       std::string& secret, std::string& reason) = nullptr;
  SecretResult (*erase)(void* context, const std::string& name, const std::string& id,
                        std::string& reason) = nullptr;
};

struct Platform {
  SerialFunctions serial;
  ClockFunctions clock;
  ThreadFunctions thread;
  NotifierFunctions notifier;
  RegistryFunctions registry;
  SecretFunctions secret;
};

// The operating system's own. All its functions may be called from any thread; one port belongs to
// one thread at a time.
const Platform& NativePlatform();

// True when a text that names a port on the command line is a device's own name and not a number.
bool IsPortName(const std::string& text);

}  // namespace skyhaul
