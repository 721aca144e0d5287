#include "instruments/bench.h"

#include <algorithm>

namespace skyhaul {

namespace {

constexpr SerialHandle kBenchHandle = 1;
constexpr uint8_t kXon = 0x11;
constexpr uint8_t kXoff = 0x13;
constexpr uint64_t kNsPerMs = 1'000'000;
// In May 2026. A fixed date, so that files are the same in every run.
constexpr int64_t kStartOfTime_s = 1'780'000'000;

Bench& Of(void* context) {
  return *static_cast<Bench*>(context);
}

bool FaultNow(const Bench& bench, FaultKind kind, bool towards_instrument, size_t at) {
  const Fault& fault = bench.fault;
  return fault.kind == kind && fault.towards_instrument == towards_instrument && fault.at == at;
}

void CountWait(Bench& bench) {
  if (bench.fault.kind == FaultKind::kAbort && bench.fault.at == bench.waits) {
    bench.abort(bench.abort_context);
  }
  ++bench.waits;
}

SimulatedInstrument* Answering(const Bench& bench) {
  // Another port opens all the same and stays silent, as a port with nothing on it does.
  return bench.open_port == bench.instrument_port ? bench.instrument : nullptr;
}

PortOpening Open(void* context, const std::string& name) {
  Bench& bench = Of(context);
  const auto found = bench.open_problems.find(name);
  // A plug that was pulled stays out: opening again finds no port either.
  const bool missing = bench.unplugged || bench.opens < static_cast<size_t>(bench.failing_opens);
  // Failed openings count too, since failing_opens says how many come first.
  ++bench.opens;
  PortOpening opening;
  if (missing || found != bench.open_problems.end()) {
    opening.problem = missing ? PortProblem::kMissing : found->second;
    opening.reason = missing ? "no " + name : name + " cannot be opened";
    return opening;
  }
  bench.open_port = name;
  bench.output_stopped = false;
  // Nobody has heard what was sent while the port was closed.
  if (SimulatedInstrument* instrument = Answering(bench))
    LoseArrived(instrument->wire, bench.now_ns);
  opening.handle = kBenchHandle;
  opening.warning = bench.open_warning;
  return opening;
}

// A byte as the system's driver takes it in.
void TakeIn(Bench& bench, uint8_t byte) {
  // The driver obeys the flow control at once, however late the program reads. It also passes it
  // on, which real ones need not do.
  if (bench.settings.xon_xoff && (byte == kXoff || byte == kXon)) {
    bench.output_stopped = byte == kXoff;
  }
  bench.input.push_back(byte);
}

// Takes in one byte that has arrived, or what the fault makes of it.
void Arrive(Bench& bench, uint8_t byte) {
  // Counted before any fault, so that one byte's fault does not move the place of the next.
  const size_t at = bench.received++;
  if (FaultNow(bench, FaultKind::kUnplug, false, at)) bench.unplugged = true;
  if (bench.unplugged || FaultNow(bench, FaultKind::kDrop, false, at)) return;
  if (FaultNow(bench, FaultKind::kOverrun, false, at)) {
    ++bench.losses;
    return;
  }
  if (FaultNow(bench, FaultKind::kStop, false, at)) TakeIn(bench, kXoff);
  if (FaultNow(bench, FaultKind::kFlip, false, at)) {
    byte = static_cast<uint8_t>(byte ^ bench.fault.flip_mask);
  }
  TakeIn(bench, byte);
  if (FaultNow(bench, FaultKind::kRepeat, false, at)) TakeIn(bench, byte);
}

// When the next byte arrives, its own lateness included.
uint64_t NextByte_ns(Bench& bench, Wire& wire) {
  const uint64_t arrival_ns = NextArrival_ns(wire);
  if (arrival_ns == kNever_ns || bench.delayed ||
      !FaultNow(bench, FaultKind::kDelay, false, bench.received)) {
    return arrival_ns;
  }
  // The line stands still. Everything behind the byte is late too, or the bytes would change
  // places.
  bench.delayed = true;
  wire.free_at_ns = arrival_ns + bench.fault.delay_ms * kNsPerMs;
  return NextArrival_ns(wire);
}

// Takes in all that has arrived by now.
void TakeArrivals(Bench& bench) {
  SimulatedInstrument* instrument = Answering(bench);
  if (instrument == nullptr) return;
  uint8_t byte = 0;
  while (NextByte_ns(bench, instrument->wire) <= bench.now_ns &&
         TakeArrived(instrument->wire, bench.now_ns, &byte, 1) == 1) {
    Arrive(bench, byte);
  }
}

// Lets the time pass until something has arrived, or to the deadline.
void AwaitArrival(Bench& bench, uint64_t deadline_ns) {
  SimulatedInstrument* instrument = Answering(bench);
  for (;;) {
    TakeArrivals(bench);
    if (!bench.input.empty() || bench.unplugged) return;
    const uint64_t next_ns =
        instrument == nullptr ? kNever_ns : NextByte_ns(bench, instrument->wire);
    // A read that gets nothing waits its full time, as on a real port.
    bench.now_ns = std::min(next_ns, deadline_ns);
    if (next_ns > deadline_ns) return;
  }
}

SetupStep Configure(void* context, SerialHandle /*port*/, const SerialSettings& settings) {
  Bench& bench = Of(context);
  // Kept also when the setup fails, so that a test sees what was asked for.
  bench.settings = settings;
  TakeArrivals(bench);
  bench.input.clear();
  return bench.setup_failure;
}

int Read(void* context, SerialHandle /*port*/, uint8_t* buffer, size_t capacity) {
  Bench& bench = Of(context);
  CountWait(bench);
  AwaitArrival(bench, bench.now_ns + kReadWait_ms * kNsPerMs);
  // What arrived before the plug was pulled is still delivered; the failure comes with the next
  // read.
  if (bench.unplugged && bench.input.empty()) return -1;
  const auto count = static_cast<ptrdiff_t>(std::min(capacity, bench.input.size()));
  std::copy(bench.input.begin(), bench.input.begin() + count, buffer);
  bench.input.erase(bench.input.begin(), bench.input.begin() + count);
  return static_cast<int>(count);
}

// A driver holds stopped output back until an XON comes, and gives up after the write's time-out.
bool MayWrite(Bench& bench, size_t count) {
  constexpr uint64_t kPatience_ns = 2 * kNsPerMs;  // per byte
  const uint64_t deadline_ns = bench.now_ns + count * kPatience_ns;
  TakeArrivals(bench);
  while (bench.output_stopped && bench.now_ns < deadline_ns) {
    bench.now_ns = std::min(bench.now_ns + kNsPerMs, deadline_ns);
    TakeArrivals(bench);
  }
  return !bench.output_stopped && !bench.unplugged;
}

// Sends one byte, or what the fault makes of it, to the instrument.
void Forward(Bench& bench, uint8_t byte, uint64_t at_ns) {
  const size_t at = bench.sent++;
  if (FaultNow(bench, FaultKind::kUnplug, true, at)) bench.unplugged = true;
  SimulatedInstrument* instrument = Answering(bench);
  if (instrument == nullptr || bench.unplugged || FaultNow(bench, FaultKind::kDrop, true, at)) {
    return;
  }
  if (FaultNow(bench, FaultKind::kFlip, true, at)) {
    byte = static_cast<uint8_t>(byte ^ bench.fault.flip_mask);
  }
  const int times = FaultNow(bench, FaultKind::kRepeat, true, at) ? 2 : 1;
  for (int i = 0; i < times; ++i) {
    instrument->receive(instrument->state, instrument->wire, byte, at_ns);
  }
}

int Write(void* context, SerialHandle /*port*/, const uint8_t* bytes, size_t count) {
  Bench& bench = Of(context);
  const size_t at = bench.writes++;
  // A failed write reaches the instrument with no byte, and counts among the writes.
  if (bench.fault.kind == FaultKind::kFailWrite && bench.fault.at <= at) return -1;
  if (!MayWrite(bench, count)) return -1;
  bench.written.append(reinterpret_cast<const char*>(bytes), count);
  constexpr uint64_t kBitsPerByte_ns = 10'000'000'000;
  // Each byte reaches the instrument when its stop bit has, at the speed that the program has set.
  // The clock stands still: a write only fills the system's buffer.
  const uint64_t byte_time_ns = kBitsPerByte_ns / bench.settings.baud;
  for (size_t i = 0; i < count; ++i) {
    Forward(bench, bytes[i], bench.now_ns + (i + 1) * byte_time_ns);
  }
  return 0;
}

void Close(void* context, SerialHandle /*port*/) {
  Bench& bench = Of(context);
  if (SimulatedInstrument* instrument = Answering(bench)) TellClosed(*instrument);
  bench.open_port.clear();
  bench.input.clear();
}

void FreeOutput(void* context, SerialHandle /*port*/) {
  Of(context).output_stopped = false;
}

uint32_t CountedLosses(void* context, SerialHandle /*port*/) {
  return Of(context).losses;
}

int List(void* context, std::vector<PortInfo>& ports) {
  const Bench& bench = Of(context);
  ports = bench.ports;
  return bench.list_fails ? -1 : 0;
}

std::string NameOf(void* context, uint32_t number) {
  // A number that the list does not have gives the name that Windows would use.
  for (const PortInfo& port : Of(context).ports) {
    if (port.number == number) return port.name;
  }
  return "COM" + std::to_string(number);
}

uint64_t Tick_ms(void* context) {
  return Of(context).now_ns / kNsPerMs;
}

void Wait(void* context, uint32_t ms) {
  Bench& bench = Of(context);
  CountWait(bench);
  bench.now_ns += ms * kNsPerMs;
}

int64_t UnixTime_s(void* context) {
  // Calendar and clock move together, whatever the machine's own clock does.
  return kStartOfTime_s + static_cast<int64_t>(Of(context).now_ns / 1'000'000'000);
}

int StartThread(void* context, void (*run)(void*), void* argument, ThreadHandle* thread) {
  // As a system does that has run out of threads.
  if (Of(context).no_threads) return -1;
  // Threads are real even in virtual time: a job runs on one of its own.
  const ThreadFunctions& native = NativePlatform().thread;
  return native.start(native.context, run, argument, thread);
}

void JoinThread(void* /*context*/, ThreadHandle thread) {
  const ThreadFunctions& native = NativePlatform().thread;
  native.join(native.context, thread);
}

int SendToClient(void* context, const std::string& client, const std::string& text) {
  Bench& bench = Of(context);
  if (bench.missed_texts > 0) {
    // A client that is not ready at first; later texts reach it.
    --bench.missed_texts;
    return -1;
  }
  bench.told.push_back(client + ": " + text);
  return 0;
}

}  // namespace

Platform BenchPlatform(Bench& bench) {
  // Neither registry nor secrets: jobs do not use them.
  return {.serial = {.context = &bench,
                     .open = Open,
                     .configure = Configure,
                     .read = Read,
                     .write = Write,
                     .close = Close,
                     .free_output = FreeOutput,
                     .losses = CountedLosses,
                     .list = List,
                     .name_of = NameOf},
          .clock = {.context = &bench, .tick_ms = Tick_ms, .wait = Wait, .unix_time_s = UnixTime_s},
          .thread = {.context = &bench, .start = StartThread, .join = JoinThread},
          .notifier = {.context = &bench, .send = SendToClient}};
}

}  // namespace skyhaul
