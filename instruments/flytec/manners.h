#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>

namespace skyhaul::flytec_simulator {

// A place in an answer that no answer has.
inline constexpr int64_t kNowhere = std::numeric_limits<int64_t>::max();

// What a simulated instrument does beside answering: the habits of real ones, and the faults of a
// transfer as the other side sees them. The defaults are those of an instrument on a good day.
struct Manners {
  // Drops what it is sent between its XOFF and its XON, as a real one does. XON and XOFF themselves
  // are obeyed at any time.
  bool deaf_while_busy = true;

  // Goes on with its answer when the program has closed its port, so that the next program gets the
  // rest. A real one does, for up to a minute. An XOFF of the first program still holds then.
  bool keep_sending = false;

  // The number of flights that the flight list claims; unset: as many as there are.
  std::optional<size_t> announced_flights = {};

  // --- What follows is done to chosen answers only ---

  // How a request begins, without '$': "PBRTL", or "PBRTR,01" for the second flight. Empty: every
  // request, but then only the flight list is short of lines, and only flights stall or are cut.
  std::string request = {};
  // Of these requests the n-th since the start, counted from 1; 0: every one.
  uint32_t nth = 0;

  bool silent = false;    // says nothing, not even XOFF; does what it is asked all the same
  uint64_t late_ns = 0;   // the request is noticed so much later: XOFF, answer and XON are late
  bool lose_xon = false;  // the XON after the answer is lost; the instrument itself is done
  // Only the first so many sentences of a list are sent, then XON.
  size_t lines = std::numeric_limits<size_t>::max();

  // Bytes of the answer, without XOFF; a negative number counts from its end, -1 is before the last
  // byte. A place at or behind the end changes nothing.
  int64_t stall_at = kNowhere;     // so many bytes are sent, then nothing for stall_ns
  uint64_t stall_ns = UINT64_MAX;  // then the rest; UINT64_MAX: neither rest nor XON ever come, and
                                   // the next request is answered
  int64_t cut_at = kNowhere;       // so many bytes are sent, the rest never, then XON
};

}  // namespace skyhaul::flytec_simulator
