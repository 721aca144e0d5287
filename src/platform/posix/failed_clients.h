#pragma once

#include <mutex>
#include <set>
#include <string>

namespace skyhaul {

// The clients whose last text did not arrive. Nobody waits for them again until one does, so that a
// client that has gone cannot slow a download down.
struct FailedClients {
  std::mutex mutex;
  std::set<std::string> names;
};

bool HasFailed(FailedClients& failed, const std::string& client);

// Notes how the last text to a client ended.
void RememberClient(FailedClients& failed, const std::string& client, bool has_failed);

}  // namespace skyhaul
