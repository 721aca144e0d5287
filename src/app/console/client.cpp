#include "app/console/client.h"

#include "core/operation.h"

namespace skyhaul {

void NotifyClient(const Session& session, const std::string& client, const std::string& text,
                  uint32_t patience_ms) {
  constexpr uint32_t kRetry_ms = 50;
  // Nobody asked to be told.
  if (client.empty()) return;
  const NotifierFunctions& notifier = session.platform->notifier;
  const ClockFunctions& clock = session.platform->clock;
  const uint64_t start_ms = clock.tick_ms(clock.context);
  while (notifier.send(notifier.context, client, text) != 0) {
    if (clock.tick_ms(clock.context) - start_ms >= patience_ms) {
      // A status and no failure: the flight is saved, whether or not the client hears of it.
      ShowStatus(Operation{.shell = session.shell}, "Client " + client + " cannot be reached");
      return;
    }
    clock.wait(clock.context, kRetry_ms);
  }
}

void NotifyEnd(const Session& session, const std::string& client, bool done,
               const std::vector<std::string>& written) {
  // A slow client is not waited for with every position, but the end is worth a second.
  constexpr uint32_t kPatience_ms = 1000;
  // Done=1
  // flights/2026-05-24-xsh-000-01.igc
  std::string notice = done ? "Done=1" : "Done=0";
  for (const std::string& path : written) notice += '\n' + path;
  NotifyClient(session, client, notice, kPatience_ms);
}

}  // namespace skyhaul
