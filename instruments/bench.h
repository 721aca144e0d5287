#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <string>
#include <vector>

#include "instruments/instrument.h"
#include "platform/platform.h"

namespace skyhaul {

// What goes wrong in one run. Bytes are counted from 0 over the whole run in their direction,
// writes and waits (pauses and reads) likewise.
enum class FaultKind {
  kNone,
  kDrop,
  kFlip,
  kRepeat,
  kDelay,    // the byte, and all behind it, arrives delay_ms late
  kOverrun,  // dropped, and the system counts it
  kStop,     // an XOFF that nobody sent comes before the byte
  kUnplug,
  kFailWrite,  // and all behind it
  kAbort,
};

struct Fault {
  FaultKind kind = FaultKind::kNone;
  bool towards_instrument = false;  // the byte faults; else the bytes that the program receives
  size_t at = 0;
  uint8_t flip_mask = 0x01;
  uint32_t delay_ms = 1500;
};

// A Platform in one process with virtual time: a wait advances the clock and costs nothing, and
// runs repeat to the byte. One simulated instrument, if any, is behind one of the ports. Threads
// are real. After a run it says what happened. While a job runs, it belongs to the job's thread.
struct Bench {
  SimulatedInstrument* instrument = nullptr;  // null: nobody answers
  std::string instrument_port = "port1";
  std::vector<PortInfo> ports;  // the system's list
  bool list_fails = false;
  std::map<std::string, PortProblem> open_problems;  // per port name
  int failing_opens = 0;                             // the first so many opens find no port
  std::string open_warning;                          // about every port that is opened
  SetupStep setup_failure = SetupStep::kNone;
  bool no_threads = false;
  int missed_texts = 0;  // the client does not take the first so many
  Fault fault;
  void (*abort)(void* context) = nullptr;  // called for FaultKind::kAbort
  void* abort_context = nullptr;

  // What happened.
  uint64_t now_ns = 1'000'000'000;
  size_t received = 0;  // bytes that the instrument put on the wire and that have arrived
  size_t sent = 0;      // bytes that the program has written
  size_t writes = 0;
  size_t waits = 0;
  size_t opens = 0;
  uint32_t losses = 0;
  bool delayed = false;  // FaultKind::kDelay has happened
  bool unplugged = false;
  bool output_stopped = false;  // by an XOFF of the instrument, with flow control on
  std::deque<uint8_t> input;    // arrived and not yet read
  std::string open_port;        // empty: closed
  SerialSettings settings;
  std::string written;            // all that the program wrote
  std::vector<std::string> told;  // texts that the client got
};

// The bench must outlive the platform record.
Platform BenchPlatform(Bench& bench);

inline uint64_t Elapsed_ms(const Bench& bench, uint64_t since_ns) {
  return (bench.now_ns - since_ns) / 1'000'000;
}

}  // namespace skyhaul
