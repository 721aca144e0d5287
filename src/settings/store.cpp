#include "settings/store.h"

#include "settings/table.h"

namespace skyhaul {

namespace {

constexpr const char* kTitle = "Registry access error";

// What a person has typed wrong into the file, with the number of the line. Each note is given
// once.
void ShowNotes(const SettingsStore& store, RegistryHandle key, const Operation& operation) {
  for (const std::string& note : store.registry->take_notes(store.registry->context, key)) {
    ShowStatus(operation, note);
  }
}

// Reads one value into live and snapshot; live becomes the default when that fails.
QueryResult ReadSetting(SettingsStore& store, RegistryHandle key,
                        const SettingDescriptor& setting) {
  std::string bytes;
  const QueryResult result = store.registry->query(
      store.registry->context, key, std::string(setting.name), setting.kind, setting.size, bytes);
  // The snapshot follows what was read, so that only what this run changes differs from it at the
  // end.
  if (result == QueryResult::kFound) {
    SetSettingBytes(setting, bytes, store.live);
    SetSettingBytes(setting, bytes, store.snapshot);
  } else {
    SetSettingBytes(setting, BytesOfSetting(setting, store.snapshot), store.live);
  }
  return result;
}

int WriteSetting(SettingsStore& store, const SettingDescriptor& setting, IfSet if_set,
                 std::string& reason) {
  return store.registry->set(store.registry->context, store.key, std::string(setting.name),
                             setting.kind, BytesOfSetting(setting, store.live), if_set, reason);
}

// The key is the user's and was there before. A write that fails is tried again by the next run.
void ReadUsers(SettingsStore& store, RegistryHandle key, bool may_write) {
  std::string ignored;
  for (const SettingDescriptor& setting : SettingTable()) {
    const QueryResult result = ReadSetting(store, key, setting);
    if (result == QueryResult::kFound || !may_write) continue;
    const bool missing = result == QueryResult::kMissing;
    // A missing value may have been written by another program meanwhile, and that one stays. A
    // value that cannot be used has to go, whatever it is.
    WriteSetting(store, setting, missing ? IfSet::kKeep : IfSet::kReplace, ignored);
  }
  // The file collects the defaults and writes them once; the registry of Windows has written each.
  if (may_write) store.registry->flush(store.registry->context, key, ignored);
}

void ReadTemplate(SettingsStore& store, const Operation& operation) {
  const RegistryFunctions& registry = *store.registry;
  // Few computers have a template. One that cannot be opened counts as none.
  const RegistryOpening opening = registry.open(registry.context, RegistryKey::kTemplate);
  if (opening.handle == kNoRegistryHandle) return;
  for (const SettingDescriptor& setting : SettingTable()) {
    ReadSetting(store, opening.handle, setting);
  }
  ShowNotes(store, opening.handle, operation);
  registry.close(registry.context, opening.handle);
}

}  // namespace

int LoadSettings(const RegistryFunctions& registry, const Operation& operation,
                 SettingsAccess access, SettingsStore& store) {
  store = {};
  store.registry = &registry;
  // Defaults first: whatever fails below leaves a store that a run can work with.
  store.snapshot = DefaultSettings(registry);
  store.live = store.snapshot;
  const bool may_write = access == SettingsAccess::kReadAndWrite;
  const RegistryOpening opening =
      registry.open(registry.context, may_write ? RegistryKey::kUser : RegistryKey::kUserReadOnly);
  const bool open = opening.handle != kNoRegistryHandle;
  // A read-only opening makes no key, so a user without settings is no failure there.
  if (!open && !opening.missing) {
    ShowMessage(operation, opening.reason, kTitle);
    return -1;
  }
  if (may_write) store.key = opening.handle;
  store.created = opening.created;
  // A key that has just been made is empty; asking it for 92 values would give 92 defaults and hide
  // the template.
  if (!open || opening.created) {
    ReadTemplate(store, operation);
  } else {
    ReadUsers(store, opening.handle, may_write);
  }
  if (open) ShowNotes(store, opening.handle, operation);
  // A run that may write keeps the key open to its end, because SaveSettings() writes through it.
  if (open && !may_write) registry.close(registry.context, opening.handle);
  return 0;
}

int SaveSettings(SettingsStore& store, std::string& reason) {
  if (store.key == kNoRegistryHandle) return 0;
  int result = 0;
  for (const SettingDescriptor& setting : SettingTable()) {
    const std::string bytes = BytesOfSetting(setting, store.live);
    const bool changed = bytes != BytesOfSetting(setting, store.snapshot);
    // A new user gets all values, so that the file shows what there is to be set.
    if (!changed && !store.created) continue;
    // What this run did not change may have been changed by another program meanwhile.
    std::string this_reason;
    if (WriteSetting(store, setting, changed ? IfSet::kReplace : IfSet::kKeep, this_reason) == 0) {
      SetSettingBytes(setting, bytes, store.snapshot);
    } else if (result == 0) {
      // Only the first reason is shown: those after it mostly say the same.
      result = -1;
      reason = this_reason;
    }
  }
  std::string flush_reason;
  if (store.registry->flush(store.registry->context, store.key, flush_reason) != 0 && result == 0) {
    result = -1;
    reason = flush_reason;
  }
  // The key is closed after a failure too: the run is at its end and nobody tries again.
  CloseSettings(store);
  return result;
}

void CloseSettings(SettingsStore& store) {
  if (store.key == kNoRegistryHandle) return;
  store.registry->close(store.registry->context, store.key);
  store.key = kNoRegistryHandle;
}

}  // namespace skyhaul
