#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/operation.h"
#include "platform/platform.h"

namespace skyhaul {

inline constexpr uint8_t kXon = 0x11;
inline constexpr uint8_t kXoff = 0x13;

inline constexpr int kTimedOut = -1;
inline constexpr int kPortFailed = -2;
inline constexpr int kAborted = -3;
inline constexpr int kNotAtRest = -6;

inline constexpr uint32_t kDefaultAttempts = 30;

// A serial port as a driver sees it. It belongs to the job thread.
struct SerialLink {
  const Platform* platform = nullptr;
  Operation* operation = nullptr;
  std::string port_name;
  uint32_t attempts = kDefaultAttempts;  // one-second attempts to open the port
  bool automatic = false;                // no port was chosen: every candidate is tried
  std::vector<std::string> candidates;   // port names, the configured port first
  SerialHandle handle = kNoSerialHandle;
  bool xon_xoff = false;         // the family's flow control, for a change of speed
  std::vector<uint8_t> pending;  // received beyond the end of the last answer
  size_t thrown_away = 0;        // bytes that came in the last rest, without flow control
};

// Opens and configures the link's port in one attempt a second, with "Connecting to GPS (%)"
// between them. Returns 0, or -1 after a message (or "Transfer aborted"). The port is closed on
// failure.
int OpenPort(SerialLink& link, const SerialSettings& settings);

// One attempt to open and configure, without messages. Returns 0, or -1 and problem says why; its
// warning is about a port that was opened.
int TryOpenPort(SerialLink& link, const SerialSettings& settings, PortOpening& problem);

// Changes the open port's speed, with the flow control of the link's family, and lets it settle for
// 200 ms. Returns 0, or -1 after a message; the port stays open.
int ReconfigurePort(SerialLink& link, uint32_t baud);

// Does nothing when the port is not open.
void ClosePort(SerialLink& link);

// Writes to the port and to the trace, bytes as a hex dump and text as text.
// Returns 0 or -1; the caller shows its own message.
int WriteBytes(SerialLink& link, const uint8_t* bytes, size_t count);
int WriteText(SerialLink& link, std::string_view text);

// Waits; an abort ends the wait within 50 ms.
void Pause(const SerialLink& link, uint32_t ms);

inline constexpr uint32_t kQuiet_ms = 100;
inline constexpr uint32_t kLongestRest_ms = 90'000;

// The pause before a request, in which the link comes to rest: output that an XOFF has stopped is
// freed, and what is pending or still arrives is thrown away. It takes pause_ms, and longer while
// the instrument goes on sending: until kQuiet_ms have passed without a byte. Returns 0, kAborted
// after the status "Transfer aborted", or kNotAtRest after a message when the instrument was still
// sending after kLongestRest_ms. A port that fails meanwhile is left for the request to find out.
int BringToRest(SerialLink& link, uint32_t pause_ms);

// Lets output leave that an XOFF of the instrument has stopped.
void FreeOutput(const SerialLink& link);

// How often bytes on the way in have been lost or damaged, as far as the system knows; only a
// difference means anything.
uint32_t Losses(const SerialLink& link);

// The terms of a read with a deadline.
struct ReadTerms {
  uint32_t timeout_ms = 2000;
  bool since_last_byte = false;   // the time-out counts from the last byte received, not the start
  size_t chunk = 100;             // bytes asked for at a time, up to kMaxChunk
  bool drop_flow_control = true;  // XON and XOFF are traced but not fed
};

inline constexpr size_t kMaxChunk = 200;

// The answer of the function that takes the bytes.
enum class Feed { kMore, kDone };

namespace internal {
// One read into the link's pending bytes. Returns the number of bytes, or a negative code.
int Receive(SerialLink& link, size_t chunk);
uint64_t Tick_ms(const SerialLink& link);

// Feeds the pending bytes. True when done; then the bytes after the last one fed are still pending.
template <typename FeedByte>
bool FeedPending(SerialLink& link, bool drop_flow_control, FeedByte& feed) {
  for (size_t i = 0; i < link.pending.size(); ++i) {
    const uint8_t byte = link.pending[i];
    if (drop_flow_control && (byte == kXon || byte == kXoff)) continue;
    if (feed(byte) == Feed::kDone) {
      link.pending.erase(link.pending.begin(),
                         link.pending.begin() + static_cast<ptrdiff_t>(i) + 1);
      return true;
    }
  }
  link.pending.clear();
  return false;
}
}  // namespace internal

// Feeds received bytes to `feed` (a function of one byte that returns Feed) until it is done.
// Returns 0 then, kTimedOut, kPortFailed, or kAborted after the status "Transfer aborted"; the
// abort flag is looked at before each read. Bytes after the one that was the last stay in the link
// for the next call. Time spent in `feed` never counts as the instrument's silence: time is only up
// after a read that brought nothing.
template <typename FeedByte>
int ReadWithDeadline(SerialLink& link, const ReadTerms& terms, FeedByte feed) {
  uint64_t start_ms = internal::Tick_ms(link);
  if (internal::FeedPending(link, terms.drop_flow_control, feed)) return 0;
  for (;;) {
    if (StopRequested(*link.operation)) return kAborted;
    const int received = internal::Receive(link, terms.chunk);
    if (received < 0) return kPortFailed;
    if (internal::FeedPending(link, terms.drop_flow_control, feed)) return 0;
    const uint64_t now_ms = internal::Tick_ms(link);
    if (received > 0 && terms.since_last_byte) {
      start_ms = now_ms;
    } else if (now_ms - start_ms > terms.timeout_ms) {
      return kTimedOut;
    }
  }
}

}  // namespace skyhaul
