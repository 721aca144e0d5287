#include "device/find_instrument.h"

#include <algorithm>
#include <string>
#include <vector>

#include "core/count_message.h"

namespace skyhaul {

namespace {

// A round takes about as long as asking one instrument does, so it costs two of the one-second
// attempts.
constexpr uint32_t kRoundWithoutPort_ms = 2000;
constexpr uint32_t kAttemptsPerRound = 2;

std::string JoinedNames(const SerialLink& link) {
  std::string names;
  for (const std::string& name : link.candidates) names += (names.empty() ? "" : ", ") + name;
  return names;
}

// Shown when it is found out, so that a person who can mend it need not wait for the end.
void AddReason(Job& job, std::vector<std::string>& reasons, const std::string& reason) {
  // Each reason once, however many rounds there are.
  if (reason.empty() || std::find(reasons.begin(), reasons.end(), reason) != reasons.end()) return;
  reasons.push_back(reason);
  ShowStatus(job.operation, reason);
}

// One round over the ports.
struct Round {
  int opened = 0;
  bool noisy = false;  // something on one of them does not stop sending
};

// Returns 0 when found, 1 to go on, -1 when the search is over. Counts the ports that could be
// opened and collects why others could not.
int TryCandidate(Job& job, const SerialSettings& settings, IdentifyOnce identify, Round& round,
                 std::vector<std::string>& reasons) {
  SerialLink& link = job.link;
  PortOpening problem;
  if (TryOpenPort(link, settings, problem) != 0) {
    round.noisy = round.noisy || problem.problem == PortProblem::kNoisy;
    AddReason(job, reasons, problem.reason);
    return 1;
  }
  ++round.opened;
  // Kept for the end: bytes that another program takes are a reason for no answer.
  if (!problem.warning.empty()) {
    AddReason(job, reasons, link.port_name + ": " + problem.warning);
  }
  ShowStatus(job.operation, "Trying " + link.port_name);
  const int identified = identify(job);
  if (identified == 0) return 0;
  ClosePort(link);
  // Silence, or an adapter that fails, says nothing about the other ports.
  return identified == kTimedOut || identified == kPortFailed ? 1 : -1;
}

}  // namespace

int FindInstrument(Job& job, const SerialSettings& settings, IdentifyOnce identify) {
  SerialLink& link = job.link;
  std::vector<std::string> reasons;
  Round round;
  const ClockFunctions& clock = link.platform->clock;
  const uint64_t start_ms = clock.tick_ms(clock.context);
  for (uint32_t left = link.attempts; left > 0;) {
    ShowProgress(job.operation, FormatCountMessage("Connecting to GPS (%)", left));
    round = {};  // the message is about the last round
    for (const std::string& candidate : link.candidates) {
      if (StopRequested(job.operation)) return -1;
      link.port_name = candidate;
      const int tried = TryCandidate(job, settings, identify, round, reasons);
      if (tried <= 0) return tried;
    }
    // Asking takes its time by itself; a round without a port would pass at once.
    if (round.opened == 0) Pause(link, kRoundWithoutPort_ms);
    // What does not stop sending may be the instrument, with the rest of an earlier transfer.
    // Rounds that wait for it do not count.
    const bool waiting = round.noisy && clock.tick_ms(clock.context) - start_ms < kLongestRest_ms;
    if (!waiting) left -= std::min(left, kAttemptsPerRound);
  }
  // The last wait may have been cut short by an abort, which has no message.
  if (StopRequested(job.operation)) return -1;
  std::string text = round.opened > 0 ? "No valid response from GPS"
                                      : "Could not open serial port (sure it's the right one ?)";
  for (const std::string& reason : reasons) text += "\n" + reason;
  ShowMessage(job.operation, text, "Connecting to GPS on " + JoinedNames(link));
  return -1;
}

}  // namespace skyhaul
