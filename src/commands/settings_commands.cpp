#include "commands/settings_commands.h"

#include <algorithm>
#include <utility>

#include "core/operation.h"
#include "settings/password.h"
#include "settings/store.h"
#include "settings/table.h"

namespace skyhaul {

namespace {

int Fail(const Operation& operation, const std::string& text) {
  ShowMessage(operation, text, "Settings");
  return -1;
}

// The system has no words of its own for a service that is not there.
int RefusePassword(const Operation& operation, const std::string& name, SecretResult result,
                   const std::string& reason) {
  const std::string why = result == SecretResult::kNoService
                              ? "this system has no place that keeps passwords secret"
                              : reason;
  return Fail(operation, name + " is not stored: " + why);
}

// Puts the values into the live settings; passwords go to the system's secrets on the way.
int Assign(const SecretFunctions& secrets, const Operation& operation,
           const std::vector<Assignment>& assignments, SettingValues& live) {
  for (const Assignment& assignment : assignments) {
    const SettingDescriptor& setting = *assignment.setting;
    if (setting.marker == nullptr) {
      SetSettingBytes(setting, assignment.bytes, live);
      continue;
    }
    SecretMarker& marker = live.*setting.marker;
    // "SkylogPassword=" removes a password, so an empty one ends after the marker has been cleared.
    const SecretMarker before = marker;
    marker.fill(0);
    if (assignment.bytes.empty()) continue;
    std::string reason;
    const std::string name(setting.name);
    const SecretResult kept = KeepPassword(secrets, name, assignment.bytes, marker, reason);
    if (kept == SecretResult::kDone) continue;
    marker = before;
    // Stops at the first refusal; what was stored before it is removed by the caller.
    return RefusePassword(operation, name, kept, reason);
  }
  return 0;
}

// Removes the secrets that the first record of settings has and the second does not.
void ForgetReplaced(const SecretFunctions& secrets, const SettingValues& from,
                    const SettingValues& kept) {
  for (const SettingDescriptor& setting : SettingTable()) {
    if (setting.marker == nullptr || !SettingDiffers(setting, from, kept)) continue;
    // A secret without a marker could never be found again, and would stay for ever.
    ForgetPassword(secrets, std::string(setting.name), from.*setting.marker);
  }
}

size_t CountChanged(const SettingValues& before, const SettingValues& after) {
  const auto table = SettingTable();
  return static_cast<size_t>(std::count_if(
      table.begin(), table.end(),
      [&](const SettingDescriptor& setting) { return SettingDiffers(setting, before, after); }));
}

// Changes the settings of an open store and saves them. Returns 0 with the number of settings that
// have another value now, or -1; then none has changed.
int ChangeAndSave(const Platform& platform, const Operation& operation,
                  const std::vector<Assignment>& assignments, SettingsStore& store,
                  size_t& changed) {
  const SettingValues before = store.live;
  if (Assign(platform.secret, operation, assignments, store.live) != 0) {
    // Only secrets made in this run: the markers that are saved keep theirs.
    ForgetReplaced(platform.secret, store.live, before);
    CloseSettings(store);
    return -1;
  }
  // Old secrets go only after their markers have been replaced on disk.
  const SettingValues after = store.live;
  std::string reason;
  if (SaveSettings(store, reason) == 0) {
    ForgetReplaced(platform.secret, before, after);
    changed = CountChanged(before, after);
    return 0;
  }
  // The saved markers are the old ones, so the new secrets are the ones that nobody needs.
  ForgetReplaced(platform.secret, after, before);
  return Fail(operation, "The settings are not stored\n" + reason);
}

}  // namespace

std::optional<StoredSettings> ReadSettings(const Session& session) {
  const RegistryFunctions& registry = session.platform->registry;
  const Operation operation = {.shell = session.shell};
  SettingsStore store;
  if (LoadSettings(registry, operation, SettingsAccess::kReadOnly, store) != 0) return std::nullopt;
  return StoredSettings{.place = registry.place(registry.context),
                        .values = std::move(store.live),
                        .defaults = DefaultSettings(registry)};
}

std::optional<size_t> ChangeSettings(const Session& session,
                                     const std::vector<Assignment>& assignments) {
  const Platform& platform = *session.platform;
  const Operation operation = {.shell = session.shell};
  SettingsStore store;
  size_t changed = 0;
  if (LoadSettings(platform.registry, operation, SettingsAccess::kReadAndWrite, store) != 0 ||
      ChangeAndSave(platform, operation, assignments, store, changed) != 0) {
    return std::nullopt;
  }
  return changed;
}

}  // namespace skyhaul
