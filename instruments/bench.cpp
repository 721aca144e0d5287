#include "instruments/bench.h"

#include <algorithm>

namespace skyhaul {

namespace {

constexpr SerialHandle kBenchHandle = 1;
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
  opening.handle = kBenchHandle;
  return opening;
}

SetupStep Configure(void* context, SerialHandle /*port*/, const SerialSettings& settings) {
  Bench& bench = Of(context);
  // Kept also when the setup fails, so that a test sees what was asked for.
  bench.settings = settings;
  return bench.setup_failure;
}

SimulatedInstrument* Answering(const Bench& bench) {
  // Another port opens all the same and stays silent, as a port with nothing on it does.
  return bench.open_port == bench.instrument_port ? bench.instrument : nullptr;
}

// Delivers one byte that has arrived, or what the fault makes of it.
void Deliver(Bench& bench, uint8_t byte, std::vector<uint8_t>& delivered) {
  // Counted before any fault, so that one byte's fault does not move the place of the next.
  const size_t at = bench.received++;
  if (FaultNow(bench, FaultKind::kUnplug, false, at)) bench.unplugged = true;
  if (bench.unplugged || FaultNow(bench, FaultKind::kDrop, false, at)) return;
  if (FaultNow(bench, FaultKind::kDelay, false, at)) {
    // The clock of the program moves: what is queued behind the byte arrives meanwhile.
    bench.now_ns += bench.fault.delay_ms * kNsPerMs;
  }
  if (FaultNow(bench, FaultKind::kFlip, false, at)) {
    byte = static_cast<uint8_t>(byte ^ bench.fault.flip_mask);
  }
  delivered.push_back(byte);
  if (FaultNow(bench, FaultKind::kRepeat, false, at)) delivered.push_back(byte);
}

int Read(void* context, SerialHandle /*port*/, uint8_t* buffer, size_t capacity) {
  Bench& bench = Of(context);
  CountWait(bench);
  if (bench.unplugged) return -1;
  const uint64_t deadline_ns = bench.now_ns + kReadWait_ms * kNsPerMs;
  SimulatedInstrument* instrument = Answering(bench);
  const uint64_t arrival_ns = instrument == nullptr ? kNever_ns : NextArrival_ns(instrument->wire);
  // A read that gets nothing waits its full time, as on a real port.
  if (arrival_ns > deadline_ns) {
    bench.now_ns = deadline_ns;
    return 0;
  }
  bench.now_ns = std::max(bench.now_ns, arrival_ns);
  // One place is kept for a byte that arrives twice.
  const size_t arrived = TakeArrived(instrument->wire, bench.now_ns, buffer, capacity - 1);
  std::vector<uint8_t> delivered;
  for (size_t i = 0; i < arrived; ++i) Deliver(bench, buffer[i], delivered);
  std::copy(delivered.begin(), delivered.end(), buffer);
  // What arrived before the plug was pulled is still delivered; the failure comes with the next
  // read.
  return bench.unplugged && delivered.empty() ? -1 : static_cast<int>(delivered.size());
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
  if (bench.fault.kind == FaultKind::kFailWrite && bench.fault.at == at) return -1;
  if (bench.unplugged) return -1;
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
  Of(context).open_port.clear();
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
                     .list = List,
                     .name_of = NameOf},
          .clock = {.context = &bench, .tick_ms = Tick_ms, .wait = Wait, .unix_time_s = UnixTime_s},
          .thread = {.context = &bench, .start = StartThread, .join = JoinThread},
          .notifier = {.context = &bench, .send = SendToClient}};
}

}  // namespace skyhaul
