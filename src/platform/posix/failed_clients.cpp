#include "platform/posix/failed_clients.h"

namespace skyhaul {

namespace {

constexpr size_t kMaxFailedClients = 64;  // a run has one; beyond the limit each text waits

}  // namespace

bool HasFailed(FailedClients& failed, const std::string& client) {
  const std::lock_guard lock(failed.mutex);
  return failed.names.count(client) != 0;
}

void RememberClient(FailedClients& failed, const std::string& client, bool has_failed) {
  const std::lock_guard lock(failed.mutex);
  if (!has_failed) {
    failed.names.erase(client);
  } else if (failed.names.size() < kMaxFailedClients) {
    failed.names.insert(client);
  }
}

}  // namespace skyhaul
