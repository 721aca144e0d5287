#include "transport/serial_link.h"

#include <algorithm>
#include <string>

#include "core/count_message.h"
#include "transport/trace.h"
#include "transport/trace_log.h"

namespace skyhaul {

namespace {

constexpr uint32_t kAttempt_ms = 1000;
constexpr uint32_t kSettle_ms = 100;
constexpr uint32_t kSettleAfterReconfigure_ms = 200;
constexpr uint32_t kPauseSlice_ms = 50;  // how late an abort is seen
// While ports are tried one after the other, one that never falls silent must not hold up the rest.
constexpr uint32_t kRestOfTrial_ms = 2000;

// In the order of SetupStep.
constexpr const char* kSetupMessages[] = {
    "",
    "Error getting COM port state",
    "Error setting COM port timeouts",
    "Error setting COM port state",
    "Error purging COM port buffers",
};

SetupStep Configure(const SerialLink& link, const SerialSettings& settings) {
  const SerialFunctions& serial = link.platform->serial;
  LogTracedRemark(link.port_name + " at " + std::to_string(settings.baud) + " baud" +
                      (settings.xon_xoff ? ", XON/XOFF" : ""),
                  internal::Tick_ms(link));
  return serial.configure(serial.context, link.handle, settings);
}

// The link owns the handle from here on.
PortOpening Open(SerialLink& link) {
  const SerialFunctions& serial = link.platform->serial;
  PortOpening opening = serial.open(serial.context, link.port_name);
  link.handle = opening.handle;
  if (!opening.reason.empty()) LogTracedRemark(opening.reason, internal::Tick_ms(link));
  return opening;
}

int ConfigureOpened(SerialLink& link, const SerialSettings& settings) {
  Pause(link, kSettle_ms);
  if (Configure(link, settings) == SetupStep::kNone) return 0;
  ClosePort(link);  // left open, it would be busy for the next attempt
  return -1;
}

// As BringToRest(), without a message.
int Rest(SerialLink& link, uint32_t pause_ms, uint32_t longest_ms) {
  FreeOutput(link);
  link.pending.clear();
  link.thrown_away = 0;
  const uint64_t start_ms = internal::Tick_ms(link);
  uint64_t last_byte_ms = start_ms;
  // A port that is only tried may have anything on it.
  bool told = longest_ms < kLongestRest_ms;
  for (;;) {
    if (StopRequested(*link.operation)) return kAborted;
    const uint64_t now_ms = internal::Tick_ms(link);
    const uint64_t rested_ms = now_ms - start_ms;
    if (rested_ms >= pause_ms && now_ms - last_byte_ms >= kQuiet_ms) return 0;
    if (rested_ms > longest_ms) return kNotAtRest;
    // The last byte of an answer may come in the pause; a person need not know of that.
    if (rested_ms > pause_ms + kQuiet_ms && !told) {
      told = true;
      ShowStatus(*link.operation, "Waiting for the instrument to finish an earlier transfer");
    }
    const int received = internal::Receive(link, kMaxChunk);
    if (received < 0) return 0;
    if (received > 0) last_byte_ms = internal::Tick_ms(link);
    link.thrown_away += static_cast<size_t>(
        std::count_if(link.pending.begin(), link.pending.end(),
                      [](uint8_t byte) { return byte != kXon && byte != kXoff; }));
    link.pending.clear();
  }
}

// Logged before it is written, as it is traced.
int Write(const SerialLink& link, const uint8_t* bytes, size_t count) {
  LogTraced(Speaker::kHost, {reinterpret_cast<const char*>(bytes), count}, internal::Tick_ms(link));
  const SerialFunctions& serial = link.platform->serial;
  const int result = serial.write(serial.context, link.handle, bytes, count);
  if (result != 0) LogTracedRemark("writing failed", internal::Tick_ms(link));
  return result;
}

std::string WithReason(const std::string& text, const std::string& reason) {
  return reason.empty() ? text : text + "\n" + reason;
}

}  // namespace

int OpenPort(SerialLink& link, const SerialSettings& settings) {
  const std::string title = "Connecting to GPS on " + link.port_name;
  std::string shown_reason;
  for (uint32_t left = link.attempts; left > 0; --left) {
    if (StopRequested(*link.operation)) return -1;
    const PortOpening opening = Open(link);
    if (link.handle != kNoSerialHandle) {
      if (!opening.warning.empty()) ShowStatus(*link.operation, opening.warning);
      if (ConfigureOpened(link, settings) == 0) {
        // After an interrupted transfer an instrument goes on with it on the port just opened.
        if (BringToRest(link, kSettle_ms) == 0) return 0;
        ClosePort(link);
        return -1;
      }
      // No further attempt: a port that opens and cannot be set up is the wrong one or broken.
      ShowMessage(*link.operation, "Error while initialising port", title);
      return -1;
    }
    if (opening.reason != shown_reason) {
      // At the first attempt, so that a person who can mend it need not wait for the last.
      shown_reason = opening.reason;
      ShowStatus(*link.operation, shown_reason);
    }
    ShowProgress(*link.operation, FormatCountMessage("Connecting to GPS (%)", left));
    Pause(link, kAttempt_ms);
  }
  // The last pause may have been cut short by an abort, which has no message.
  if (StopRequested(*link.operation)) return -1;
  ShowMessage(*link.operation,
              WithReason("Could not open serial port (sure it's the right one ?)", shown_reason),
              title);
  return -1;
}

int TryOpenPort(SerialLink& link, const SerialSettings& settings, PortOpening& problem) {
  problem = Open(link);
  if (link.handle == kNoSerialHandle) return -1;
  if (ConfigureOpened(link, settings) == 0) {
    const int rested = Rest(link, kSettle_ms, kRestOfTrial_ms);
    if (rested == 0) return 0;
    ClosePort(link);
    problem = {};
    if (rested == kNotAtRest) {
      problem = {.problem = PortProblem::kNoisy,
                 .reason = link.port_name + " does not fall silent"};
    }
    return -1;
  }
  // Which step failed is left out: with many ports to try, the port's name matters.
  problem = {.problem = PortProblem::kOther,
             .reason = link.port_name + " opened but could not be configured"};
  return -1;
}

int ReconfigurePort(SerialLink& link, uint32_t baud) {
  const SetupStep failed = Configure(link, {.baud = baud, .xon_xoff = link.xon_xoff});
  if (failed != SetupStep::kNone) {
    ShowMessage(*link.operation, kSetupMessages[static_cast<size_t>(failed)],
                "Initialising COM port");
    return -1;
  }
  link.pending.clear();  // received at the speed before
  Pause(link, kSettleAfterReconfigure_ms);
  return 0;
}

void ClosePort(SerialLink& link) {
  if (link.handle == kNoSerialHandle) return;
  const SerialFunctions& serial = link.platform->serial;
  serial.close(serial.context, link.handle);
  LogTracedRemark(link.port_name + " closed", internal::Tick_ms(link));
  link.handle = kNoSerialHandle;
  link.pending.clear();
}

int WriteBytes(SerialLink& link, const uint8_t* bytes, size_t count) {
  // Traced first, so that the trace also shows what a failing port was to be sent.
  TraceHexDump(bytes, count);
  return Write(link, bytes, count);
}

int WriteText(SerialLink& link, std::string_view text) {
  TraceText(text);
  return Write(link, reinterpret_cast<const uint8_t*>(text.data()), text.size());
}

void Pause(const SerialLink& link, uint32_t ms) {
  const ClockFunctions& clock = link.platform->clock;
  // By the clock and not by counting slices: a slice may take longer than it was asked to.
  const uint64_t end_ms = clock.tick_ms(clock.context) + ms;
  while (!link.operation->aborted) {
    const uint64_t now_ms = clock.tick_ms(clock.context);
    LogTracedTime(now_ms);
    if (now_ms >= end_ms) return;
    const uint64_t slice_ms = std::min<uint64_t>(end_ms - now_ms, kPauseSlice_ms);
    clock.wait(clock.context, static_cast<uint32_t>(slice_ms));
  }
}

int BringToRest(SerialLink& link, uint32_t pause_ms) {
  const int rested = Rest(link, pause_ms, kLongestRest_ms);
  if (rested == kNotAtRest) {
    ShowMessage(*link.operation,
                "The instrument does not stop sending\nSwitch it off and on, then try again",
                "Connecting to GPS on " + link.port_name);
  }
  return rested;
}

void FreeOutput(const SerialLink& link) {
  const SerialFunctions& serial = link.platform->serial;
  serial.free_output(serial.context, link.handle);
}

uint32_t Losses(const SerialLink& link) {
  const SerialFunctions& serial = link.platform->serial;
  return serial.losses(serial.context, link.handle);
}

namespace internal {

int Receive(SerialLink& link, size_t chunk) {
  // Windows waits until the buffer is full, so a driver that expects a short answer asks for few
  // bytes.
  link.pending.resize(std::min(chunk, kMaxChunk));
  const SerialFunctions& serial = link.platform->serial;
  const int received =
      serial.read(serial.context, link.handle, link.pending.data(), link.pending.size());
  // Also after an error: what was pending has been fed before this read.
  link.pending.resize(received > 0 ? static_cast<size_t>(received) : 0);
  TraceBytes(link.pending.data(), link.pending.size());
  LogTraced(Speaker::kInstrument,
            {reinterpret_cast<const char*>(link.pending.data()), link.pending.size()},
            Tick_ms(link));
  if (received < 0) LogTracedRemark("reading failed", Tick_ms(link));
  return received;
}

uint64_t Tick_ms(const SerialLink& link) {
  const ClockFunctions& clock = link.platform->clock;
  return clock.tick_ms(clock.context);
}

}  // namespace internal

}  // namespace skyhaul
