#include "app/console/settings_commands.h"

#include <algorithm>
#include <cstdio>
#include <iostream>
#include <nlohmann/json.hpp>
#include <string_view>
#include <utility>

#include "app/console/batch.h"
#include "core/text/printable.h"
#include "settings/assignment.h"
#include "settings/password.h"
#include "settings/store.h"
#include "settings/table.h"

namespace skyhaul {

namespace {

constexpr const char* kTitle = "Settings";

// A value for a person; what would steer a terminal becomes '?'.
std::string ValueText(const SettingDescriptor& setting, const SettingValues& values) {
  if (setting.number != nullptr) return std::to_string(values.*setting.number);
  if (setting.marker != nullptr) {
    return PasswordIsSet(values.*setting.marker) ? "(set)" : "(not set)";
  }
  return PrintableText(values.*setting.text);
}

bool Differs(const SettingDescriptor& setting, const SettingValues& a, const SettingValues& b) {
  return BytesOfSetting(setting, a) != BytesOfSetting(setting, b);
}

nlohmann::ordered_json JsonValue(const SettingDescriptor& setting, const SettingValues& values) {
  if (setting.number != nullptr) return values.*setting.number;
  if (setting.marker != nullptr) return PasswordIsSet(values.*setting.marker);
  return values.*setting.text;
}

void PrintAsJson(const std::string& place, const SettingValues& values,
                 const SettingValues& defaults) {
  nlohmann::ordered_json list = nlohmann::ordered_json::array();
  for (const SettingDescriptor& setting : SettingTable()) {
    list.push_back({{"name", setting.name},
                    {"value", JsonValue(setting, values)},
                    {"default", JsonValue(setting, defaults)},
                    {"changed", Differs(setting, values, defaults)}});
  }
  const nlohmann::ordered_json all = {{"place", place}, {"settings", list}};
  const std::string text = all.dump(2, ' ', false, nlohmann::json::error_handler_t::replace);
  std::printf("%s\n", text.c_str());
}

void PrintAsText(const std::string& place, const SettingValues& values,
                 const SettingValues& defaults) {
  constexpr int kNameWidth = 24;
  std::printf("Settings in %s\n", PrintableText(place).c_str());
  size_t changed = 0;
  for (const SettingDescriptor& setting : SettingTable()) {
    const bool differs = Differs(setting, values, defaults);
    changed += differs ? 1 : 0;
    const std::string is_default =
        differs ? "  (default: " + ValueText(setting, defaults) + ")" : "";
    std::printf("%c %-*s %s%s\n", differs ? '*' : ' ', kNameWidth,
                std::string(setting.name).c_str(), ValueText(setting, values).c_str(),
                is_default.c_str());
  }
  std::printf("%zu of %zu differ from their default (*)\n", changed, SettingTable().size());
}

int Fail(const Operation& operation, const std::string& text) {
  ShowMessage(operation, text, kTitle);
  return -1;
}

// Asks for what an assignment leaves open.
int AskForValue(const Operation& operation, Assignment& assignment) {
  if (assignment.has_value) return 0;
  const std::string name(assignment.setting->name);
  ShowStatus(operation, "Type " + name + " and press Enter");
  std::string line;
  std::string message;
  if (!std::getline(std::cin, line)) return Fail(operation, name + " was not given");
  if (line.ends_with('\r')) line.pop_back();
  return TakeAssignedValue(line, assignment, message) == 0 ? 0 : Fail(operation, message);
}

int ParseAll(const Operation& operation, const std::vector<std::string>& texts,
             std::vector<Assignment>& assignments) {
  for (const std::string& text : texts) {
    Assignment assignment;
    std::string message;
    if (ParseAssignment(text, assignment, message) != 0) return Fail(operation, message);
    // Of several values for one setting the last counts.
    std::erase_if(assignments,
                  [&](const Assignment& earlier) { return earlier.setting == assignment.setting; });
    assignments.push_back(std::move(assignment));
  }
  for (Assignment& assignment : assignments) {
    if (AskForValue(operation, assignment) != 0) return -1;
  }
  return 0;
}

int SayNotKept(const Operation& operation, const std::string& name, SecretResult result,
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
    const SecretMarker before = marker;
    marker.fill(0);
    if (assignment.bytes.empty()) continue;
    std::string reason;
    const std::string name(setting.name);
    const SecretResult kept = KeepPassword(secrets, name, assignment.bytes, marker, reason);
    if (kept == SecretResult::kDone) continue;
    marker = before;
    return SayNotKept(operation, name, kept, reason);
  }
  return 0;
}

// Removes the secrets that the first record of settings has and the second does not.
void ForgetReplaced(const SecretFunctions& secrets, const SettingValues& from,
                    const SettingValues& kept) {
  for (const SettingDescriptor& setting : SettingTable()) {
    if (setting.marker == nullptr || !Differs(setting, from, kept)) continue;
    ForgetPassword(secrets, std::string(setting.name), from.*setting.marker);
  }
}

size_t CountChanged(const SettingValues& before, const SettingValues& after) {
  const auto table = SettingTable();
  return static_cast<size_t>(std::count_if(
      table.begin(), table.end(),
      [&](const SettingDescriptor& setting) { return Differs(setting, before, after); }));
}

// Changes the settings of an open store and saves them. Returns 0 with the number of settings that
// have another value now, or -1; then none has changed.
int ChangeAndSave(const Platform& platform, const Operation& operation,
                  const std::vector<Assignment>& assignments, SettingsStore& store,
                  size_t& changed) {
  const SettingValues before = store.live;
  if (Assign(platform.secret, operation, assignments, store.live) != 0) {
    ForgetReplaced(platform.secret, store.live, before);
    CloseSettings(store);
    return -1;
  }
  const SettingValues after = store.live;
  std::string reason;
  if (SaveSettings(store, reason) == 0) {
    ForgetReplaced(platform.secret, before, after);
    changed = CountChanged(before, after);
    return 0;
  }
  ForgetReplaced(platform.secret, after, before);
  return Fail(operation, "The settings are not stored\n" + reason);
}

}  // namespace

int PrintSettings(const Platform& platform, const Operation& operation, bool as_json) {
  const RegistryFunctions& registry = platform.registry;
  SettingsStore store;
  if (LoadSettings(registry, operation, SettingsAccess::kReadOnly, store) != 0) return kExitFailed;
  const std::string place = registry.place(registry.context);
  const SettingValues defaults = DefaultSettings(registry);
  if (as_json) {
    PrintAsJson(place, store.live, defaults);
  } else {
    PrintAsText(place, store.live, defaults);
  }
  return kExitDone;
}

int ChangeSettings(const Platform& platform, const Operation& operation,
                   const std::vector<std::string>& assignments) {
  std::vector<Assignment> parsed;
  if (ParseAll(operation, assignments, parsed) != 0) return kExitBadCommandLine;
  SettingsStore store;
  size_t changed = 0;
  if (LoadSettings(platform.registry, operation, SettingsAccess::kReadAndWrite, store) != 0 ||
      ChangeAndSave(platform, operation, parsed, store, changed) != 0) {
    return kExitFailed;
  }
  std::printf("%zu setting%s changed\n", changed, changed == 1 ? "" : "s");
  return kExitDone;
}

}  // namespace skyhaul
